#pragma once

class ChartSettings;
class QPalette;

/// Chooses colours that can be read beside \p palette: a dark chart in a dark window, a light one
/// in a light window.
void chooseColors(ChartSettings &settings, const QPalette &palette);

/// Copies what a user chooses in the settings dialog: everything but the names of the store and
/// the states of legend and splitter.
void copyPreferences(const ChartSettings &from, ChartSettings &to);
