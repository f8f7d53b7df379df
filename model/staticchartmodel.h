#pragma once

#include "model/abstractchartmodel.h"

/**
 * The model for finished data: its X range is the extent of the data of all series.
 *
 * A zoom or scroll freezes the range until it is undone. No margin is added, and a single sample
 * gives a range without span.
 */
class QUARVCHART_EXPORT StaticChartModel : public AbstractChartModel
{
    Q_OBJECT

public:
    /// The two names select the store of the settings.
    StaticChartModel(const QString &organization, const QString &application,
                     QObject *parent = nullptr);

    void adjustAxisX() override;
};
