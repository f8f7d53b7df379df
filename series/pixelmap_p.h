#pragma once

#include <QPointF>
#include <QTransform>

/**
 * The pixel on which a point in data units falls, exactly as QTransform::map() and qRound() have
 * it.
 *
 * A map that only scales and moves, as those of the series do, costs two multiplications here, and
 * each coordinate keeps its order: of two values the larger one never falls on the lower pixel (or
 * never on the higher one, if the factor is negative).
 */
class PixelMap
{
public:
    explicit PixelMap(const QTransform &transform)
        : m_transform(transform)
        , m_isPlain(transform.type() <= QTransform::TxScale)
    {
        // Qt leaves out a factor or a shift that it takes for none, and so what little there is.
        if (transform.type() >= QTransform::TxTranslate) {
            m_shiftX = transform.dx();
            m_shiftY = transform.dy();
        }
        if (transform.type() >= QTransform::TxScale) {
            m_scaleX = transform.m11();
            m_scaleY = transform.m22();
        }
    }

    /// Whether the map only scales and moves.
    bool isPlain() const { return m_isPlain; }

    /// @{
    /// The column and row of the pixel, of a map that isPlain().
    int column(double x) const { return qRound(m_scaleX * x + m_shiftX); }
    int row(double y) const { return qRound(m_scaleY * y + m_shiftY); }
    /// @}

    /// The pixel, whatever the map.
    QPoint pixel(double x, double y) const
    {
        if (m_isPlain) {
            return QPoint(column(x), row(y));
        }
        const QPointF mapped = m_transform.map(QPointF(x, y));
        return QPoint(qRound(mapped.x()), qRound(mapped.y()));
    }

private:
    const QTransform m_transform;
    const bool m_isPlain;
    double m_scaleX = 1.0;
    double m_scaleY = 1.0;
    double m_shiftX = 0.0;
    double m_shiftY = 0.0;
};
