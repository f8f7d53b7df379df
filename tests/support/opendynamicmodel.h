#pragma once

#include "model/dynamicchartmodel.h"
#include "support/openmodel.h"

/// A dynamic model, opened; a test says whether its window may jump.
class OpenDynamicModel : public OpenedModel<DynamicChartModel>
{
public:
    bool isPossibleJumpCurrentTime() const override { return m_jumpPossible; }

    bool m_jumpPossible = true;
};
