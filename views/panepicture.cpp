#include "views/panepicture_p.h"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

bool looksAlike(const CurveLook &a, const CurveLook &b)
{
    return a.stamp && a.stamp == b.stamp && a.color == b.color && a.lineWidth == b.lineWidth &&
           a.pointsVisible == b.pointsVisible && a.symbol == b.symbol;
}

} // namespace

bool operator==(const PaneLook &a, const PaneLook &b)
{
    return a.device == b.device && a.origin == b.origin && a.frame == b.frame &&
           a.background == b.background && a.grid == b.grid && a.matrix == b.matrix &&
           a.gridX == b.gridX && a.gridY == b.gridY &&
           std::equal(a.curves.begin(), a.curves.end(), b.curves.begin(), b.curves.end(),
                      looksAlike);
}

bool operator==(const MarginLook &a, const MarginLook &b)
{
    return a.frame == b.frame && a.grid == b.grid && a.matrix == b.matrix && a.gridX == b.gridX &&
           a.gridY == b.gridY && a.stepX == b.stepX && a.isDateTime == b.isDateTime &&
           a.showsLabelsX == b.showsLabelsX && a.colorY == b.colorY && a.texts == b.texts;
}

bool PanePicture::hasMargins(const std::optional<MarginLook> &look) const
{
    return look && m_margins && *m_margins == *look;
}

bool PanePicture::isWorthwhile(const PaneLook &look)
{
    if (m_wanted && *m_wanted == look) {
        m_isWantedAgain = true;
    } else {
        m_wanted = look;
        m_wasWantedAgain = std::exchange(m_isWantedAgain, false);
    }
    return m_isWantedAgain || m_wasWantedAgain;
}

bool PanePicture::shows(const PaneLook &look) const
{
    return m_look && *m_look == look;
}

QImage &PanePicture::canvas(const PaneLook &look)
{
    m_look.reset();
    if (m_canvas.size() != look.device) {
        m_canvas = QImage(look.device, QImage::Format_RGB32);
    }
    return m_canvas;
}

void PanePicture::draw(QPainter &painter, const PaneLook &look) const
{
    painter.drawImage(look.frame.topLeft(), m_canvas, look.frame.translated(look.origin));
}

void PanePicture::clear()
{
    m_look.reset();
    m_margins.reset();
    m_canvas = QImage();
}
