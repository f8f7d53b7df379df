#include "quarvchart_version.h"

const char *quarvchartVersion()
{
    return QUARVCHART_VERSION_STR;
}
