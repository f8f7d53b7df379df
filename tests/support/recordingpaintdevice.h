#pragma once

#include <QBrush>
#include <QLineF>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPen>
#include <QRectF>
#include <QString>
#include <QVector>

#include <memory>

class RecordingPaintEngine;

/// One call that reached a RecordingPaintDevice, with the state in which it was made.
struct PaintCall
{
    enum Kind { Line, Rect, FilledRect, Ellipse, Path, Polygon, Image, Text };

    Kind kind = Line;
    QLineF line;      ///< Of a Line.
    QRectF rect;      ///< Of a Rect, FilledRect, Ellipse, Path, Polygon (bounds) or Image (target).
    QString text;     ///< Of a Text: one line of it.
    QPointF position; ///< Of a Text: left end of its base line.
    QPen pen;
    QBrush brush;
    bool clipped = false; ///< Clipping was on ...
    QRectF clip;          ///< ... with these bounds.
};

/**
 * A paint device that draws nothing and remembers each call, in order.
 *
 * A line of text becomes one Text call for each line; a rectangle without pen that is filled
 * becomes a FilledRect. Its engine may pass itself off as one of another type.
 */
class RecordingPaintDevice : public QPaintDevice
{
public:
    explicit RecordingPaintDevice(const QSize &size, QPaintEngine::Type type = QPaintEngine::User);
    ~RecordingPaintDevice() override;

    QPaintEngine *paintEngine() const override;

    /// The calls of one kind, in order.
    QVector<PaintCall> calls(PaintCall::Kind kind) const;
    /// The texts drawn, in order.
    QStringList texts() const;

    QVector<PaintCall> calls() const;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    QSize m_size;
    std::unique_ptr<RecordingPaintEngine> m_engine;
};
