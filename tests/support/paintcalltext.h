#pragma once

#include "support/recordingpaintdevice.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStringList>

/// A number as the texts below show it: rounding errors of the last bits disappear.
inline QString numberText(double number)
{
    return QString::number(number == 0.0 ? 0.0 : number, 'g', 9);
}

inline QString pointText(const QPointF &point)
{
    return QString("%1,%2").arg(numberText(point.x()), numberText(point.y()));
}

/// "x,y wxh".
inline QString rectText(const QRectF &rect)
{
    return QString("%1 %2x%3")
        .arg(pointText(rect.topLeft()), numberText(rect.width()), numberText(rect.height()));
}

inline QString penText(const QPen &pen)
{
    return QString("%1 width %2 style %3 cap %4 join %5")
        .arg(pen.color().name(QColor::HexArgb), numberText(pen.widthF()))
        .arg(int(pen.style()))
        .arg(int(pen.capStyle()))
        .arg(int(pen.joinStyle()));
}

/// One call as one line of text, without its clip.
inline QString paintCallText(const PaintCall &call)
{
    switch (call.kind) {
    case PaintCall::Line:
        return QString("line %1 to %2, %3")
            .arg(pointText(call.line.p1()), pointText(call.line.p2()), penText(call.pen));
    case PaintCall::Rect:
        return QString("rect %1, %2, brush %3")
            .arg(rectText(call.rect), penText(call.pen), call.brush.color().name(QColor::HexArgb));
    case PaintCall::FilledRect:
        return QString("fill %1, brush %2")
            .arg(rectText(call.rect), call.brush.color().name(QColor::HexArgb));
    case PaintCall::Text:
        return QString("text \"%1\" at %2, %3")
            .arg(call.text, pointText(call.position), call.pen.color().name(QColor::HexArgb));
    case PaintCall::Ellipse:
    case PaintCall::Path:
    case PaintCall::Polygon:
    case PaintCall::Image:
        break;
    }
    return QString("shape %1, %2").arg(int(call.kind)).arg(rectText(call.rect));
}

inline QStringList paintCallTexts(const QVector<PaintCall> &calls)
{
    QStringList texts;
    for (const PaintCall &call : calls) {
        texts.append(paintCallText(call));
    }
    return texts;
}

/// The calls that \p draw makes with a painter on an empty device, large enough for every test.
template <typename Draw>
QVector<PaintCall> drawnCalls(Draw draw)
{
    RecordingPaintDevice device(QSize(2000, 2000));
    QPainter painter(&device);
    draw(painter);
    painter.end();
    return device.calls();
}

/// The same as texts.
template <typename Draw>
QStringList drawn(Draw draw)
{
    return paintCallTexts(drawnCalls(draw));
}

/// What a painter of drawnCalls() measures texts with.
inline QFontMetrics painterMetrics()
{
    RecordingPaintDevice device(QSize(1, 1));
    const QPainter painter(&device);
    return painter.fontMetrics();
}

/// The texts of the Text calls, without their places.
inline QStringList labelsOf(const QVector<PaintCall> &calls)
{
    QStringList labels;
    for (const PaintCall &call : calls) {
        if (call.kind == PaintCall::Text) {
            labels.append(call.text);
        }
    }
    return labels;
}
