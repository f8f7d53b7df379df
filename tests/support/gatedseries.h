#pragma once

#include "series/pointthread.h"
#include "support/plainseries.h"

#include <QSemaphore>
#include <QThread>

/**
 * A series whose worker waits at a gate, inside isValid(), so that a calculation lasts as long as a
 * test wants it to. The gate is open at first. Other threads pass it freely, and a worker that is
 * asked to stop is let through.
 */
class GatedSeries : public PlainSeries
{
public:
    using PlainSeries::PlainSeries;

    ~GatedSeries() override { m_pointThread->stopThread(); }

    bool isValid(const ChartValue *value) const override
    {
        if (QThread::currentThread() == m_pointThread) {
            passGate();
        }
        return PlainSeries::isValid(value);
    }

    void closeGate() { m_gate.acquire(); }
    void openGate() { m_gate.release(); }

    /// Whether a worker has come to the closed gate, or does so within some seconds.
    bool waitForWorker() { return m_arrivals.tryAcquire(1, Patience); }

private:
    static constexpr int Patience = 10000; // ms
    static constexpr int StopInterval = 5; // ms between two looks at the worker's stop flag

    void passGate() const
    {
        if (!m_gate.tryAcquire()) {
            m_arrivals.release();
            while (!m_gate.tryAcquire(1, StopInterval)) {
                if (m_pointThread->m_stop) {
                    return;
                }
            }
        }
        m_gate.release(); // a turnstile: whoever comes through leaves it open
    }

    mutable QSemaphore m_gate{1};
    mutable QSemaphore m_arrivals;
};
