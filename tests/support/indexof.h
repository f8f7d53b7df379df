#pragma once

#include "series/sampleindex_p.h"

/// The index that a series keeps of its store.
SampleIndex &indexOf(const AbstractChartSeries &series);

/// Opens the private member: where a template is instantiated explicitly, it may be named.
template <auto Member>
struct IndexOpener
{
    friend SampleIndex &indexOf(const AbstractChartSeries &series) { return *(series.*Member); }
};
template struct IndexOpener<&AbstractChartSeries::m_index>;
