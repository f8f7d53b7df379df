#pragma once

#include "series/abstractchartseries.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

/// The ends of a store as the X logic takes them: samples without a finite X, and nulls, are passed
/// over. In a store of sound samples that costs nothing, so each sample that is entered may ask.
inline bool hasFiniteX(const ChartValue *value)
{
    return value && std::isfinite(value->x);
}

/// X of the first sample that has a finite one; nothing if there is none.
inline std::optional<double> firstFiniteX(const ChartValueList &values)
{
    const auto first = std::find_if(values.cbegin(), values.cend(), hasFiniteX);
    return first == values.cend() ? std::nullopt : std::make_optional((*first)->x);
}

/// X of the last one.
inline std::optional<double> lastFiniteX(const ChartValueList &values)
{
    for (auto behind = values.cend(); behind != values.cbegin(); --behind) {
        const ChartValue *value = *std::prev(behind);
        if (hasFiniteX(value)) {
            return value->x;
        }
    }
    return std::nullopt;
}
