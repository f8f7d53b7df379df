#pragma once

#include "model/abstractchartmodel.h"

#include <QMutexLocker>

/// Holds a model's lock on the axes for its own lifetime. With a null model it holds nothing: a
/// series or command that belongs to no model shares its axes with no one.
class AxesLocker
{
public:
    explicit AxesLocker(const AbstractChartModel *model)
        : m_locker(model ? &model->m_axesMutex : nullptr)
    {
    }

private:
    QMutexLocker m_locker;
};
