#pragma once

#include "model/abstractchartmodel.h"
#include "series/lockorder_p.h"

#include <atomic>
#include <thread>

/**
 * A model's lock on the axes: a mutex that knows who holds it, so that AxesLocker may pass where
 * its thread is inside already.
 *
 * A QRecursiveMutex does that too, but with an atomic exchange at each step in and each step out,
 * and the entry of one sample comes through half a dozen of them.
 */
class AxesMutex
{
public:
    /// Whether the calling thread holds it. Only that thread ever stores its own id here, and it
    /// does so under the mutex: no other one can read its own.
    bool isHeldHere() const
    {
        return m_owner.load(std::memory_order_relaxed) == std::this_thread::get_id();
    }
    void lock()
    {
        m_mutex.lock();
        m_owner.store(std::this_thread::get_id(), std::memory_order_relaxed);
    }
    void unlock()
    {
        m_owner.store({}, std::memory_order_relaxed);
        m_mutex.unlock();
    }

private:
    InlineMutex m_mutex;
    std::atomic<std::thread::id> m_owner{std::thread::id()};
};

/// Holds a model's lock on the axes for its own lifetime, or passes if its thread holds it already:
/// a locker that was there before outlives this one. With a null model it holds nothing: a series
/// or command that belongs to no model shares its axes with no one.
class AxesLocker
{
public:
    explicit AxesLocker(const AbstractChartModel *model)
        : m_mutex(model && !model->m_axesMutex->isHeldHere() ? model->m_axesMutex.get() : nullptr)
    {
        if (m_mutex) {
            LockOrder::enter(LockRank::Axes);
            m_mutex->lock();
        }
    }
    ~AxesLocker()
    {
        if (m_mutex) {
            m_mutex->unlock();
            LockOrder::leave(LockRank::Axes);
        }
    }
    Q_DISABLE_COPY_MOVE(AxesLocker)

private:
    AxesMutex *m_mutex;
};
