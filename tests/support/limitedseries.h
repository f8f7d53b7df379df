#pragma once

#include "support/plainseries.h"

/// A series that allows each direction of zooming as a test wants it.
class LimitedSeries : public PlainSeries
{
public:
    using PlainSeries::PlainSeries;

    bool canZoomOut() override { return m_allowsOut; }
    bool canZoomInX() override { return m_allowsInX; }
    bool canZoomInY() override { return m_allowsInY; }
    bool canZoomOutX() override { return m_allowsOutX; }
    bool canZoomOutY() override { return m_allowsOutY; }

    bool m_allowsOut = true;
    bool m_allowsInX = true;
    bool m_allowsInY = true;
    bool m_allowsOutX = true;
    bool m_allowsOutY = true;
};
