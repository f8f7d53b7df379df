#pragma once

/**
 * From now on assistive technology is told what a pane shows: its series as the name; the ranges of
 * the axes and the place of the cursor line as the description, both made when they are asked for.
 *
 * What an application sets as accessible name or description of a pane goes first. GUI thread only;
 * calls after the first do nothing.
 */
void installChartAccessible();
