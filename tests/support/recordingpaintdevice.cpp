#include "support/recordingpaintdevice.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

class RecordingPaintEngine : public QPaintEngine
{
public:
    explicit RecordingPaintEngine(Type type)
        : QPaintEngine(AllFeatures)
        , m_type(type)
    {
    }

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    Type type() const override { return m_type; }
    void updateState(const QPaintEngineState &) override {}

    void drawLines(const QLineF *lines, int count) override
    {
        for (int i = 0; i < count; ++i) {
            PaintCall &call = record(PaintCall::Line);
            call.line = lines[i];
        }
    }
    void drawLines(const QLine *lines, int count) override
    {
        for (int i = 0; i < count; ++i) {
            PaintCall &call = record(PaintCall::Line);
            call.line = QLineF(lines[i]);
        }
    }
    void drawRects(const QRectF *rects, int count) override
    {
        for (int i = 0; i < count; ++i) {
            const bool filled = painter()->pen().style() == Qt::NoPen;
            PaintCall &call = record(filled ? PaintCall::FilledRect : PaintCall::Rect);
            call.rect = rects[i];
        }
    }
    void drawRects(const QRect *rects, int count) override
    {
        for (int i = 0; i < count; ++i) {
            const QRectF rect(rects[i]);
            drawRects(&rect, 1);
        }
    }
    void drawEllipse(const QRectF &rect) override { record(PaintCall::Ellipse).rect = rect; }
    void drawEllipse(const QRect &rect) override { record(PaintCall::Ellipse).rect = rect; }
    void drawPath(const QPainterPath &path) override
    {
        record(PaintCall::Path).rect = path.boundingRect();
    }
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode) override
    {
        QPolygonF polygon;
        std::copy(points, points + count, std::back_inserter(polygon));
        record(PaintCall::Polygon).rect = polygon.boundingRect();
    }
    void drawPixmap(const QRectF &target, const QPixmap &, const QRectF &) override
    {
        record(PaintCall::Image).rect = target;
    }
    void drawImage(const QRectF &target, const QImage &, const QRectF &,
                   Qt::ImageConversionFlags) override
    {
        record(PaintCall::Image).rect = target;
    }
    void drawTextItem(const QPointF &position, const QTextItem &item) override
    {
        PaintCall &call = record(PaintCall::Text);
        call.text = item.text();
        call.position = position;
    }

    QVector<PaintCall> m_calls;

private:
    const Type m_type;

    PaintCall &record(PaintCall::Kind kind)
    {
        PaintCall call;
        call.kind = kind;
        call.pen = painter()->pen();
        call.brush = painter()->brush();
        call.clipped = painter()->hasClipping();
        call.clip = call.clipped ? painter()->clipBoundingRect() : QRectF();
        m_calls.append(call);
        return m_calls.last();
    }
};

RecordingPaintDevice::RecordingPaintDevice(const QSize &size, QPaintEngine::Type type)
    : m_size(size)
    , m_engine(std::make_unique<RecordingPaintEngine>(type))
{
}

RecordingPaintDevice::~RecordingPaintDevice() = default;

QPaintEngine *RecordingPaintDevice::paintEngine() const
{
    return m_engine.get();
}

QVector<PaintCall> RecordingPaintDevice::calls() const
{
    return m_engine->m_calls;
}

QVector<PaintCall> RecordingPaintDevice::calls(PaintCall::Kind kind) const
{
    QVector<PaintCall> found;
    for (const PaintCall &call : qAsConst(m_engine->m_calls)) {
        if (call.kind == kind) {
            found.append(call);
        }
    }
    return found;
}

QStringList RecordingPaintDevice::texts() const
{
    QStringList texts;
    for (const PaintCall &call : calls(PaintCall::Text)) {
        texts.append(call.text);
    }
    return texts;
}

int RecordingPaintDevice::metric(PaintDeviceMetric metric) const
{
    constexpr int DotsPerInch = 96;
    switch (metric) {
    case PdmWidth:
        return m_size.width();
    case PdmHeight:
        return m_size.height();
    case PdmWidthMM:
        return m_size.width() * 254 / (DotsPerInch * 10);
    case PdmHeightMM:
        return m_size.height() * 254 / (DotsPerInch * 10);
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return DotsPerInch;
    case PdmDepth:
        return 32;
    case PdmNumColors:
        return 1 << 24;
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return int(devicePixelRatioFScale());
    }
    return 0;
}
