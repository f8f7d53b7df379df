#pragma once

#include "model/abstractchartmodel.h"
#include "series/lockorder_p.h"

/// Holds a model's lock on the axes for its own lifetime. With a null model it holds nothing: a
/// series or command that belongs to no model shares its axes with no one.
class AxesLocker
{
public:
    explicit AxesLocker(const AbstractChartModel *model)
        : m_mutex(model ? &model->m_axesMutex : nullptr)
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
    QRecursiveMutex *m_mutex;
};
