#pragma once

#include <QString>

class ChartPicture;
class QPrinter;

/// What a picture can be written as.
enum class PictureFormat { Png, Svg, Pdf };

/// The format that the suffix of a file name stands for; PNG if it stands for none.
PictureFormat pictureFormatOf(const QString &fileName);

/**
 * Writes a picture to a file. Returns false if that fails; \p problem then says why, and a file of
 * that name is as it was: it is replaced only by a whole one.
 *
 * \p scale is for PNG: so many pixels of the file, in each direction, for a pixel of the screen.
 */
bool exportPicture(const ChartPicture &picture, const QString &fileName, PictureFormat format,
                   double scale, QString *problem);

/// Prints a picture on one page, as large as the page allows, and centred.
void printPicture(const ChartPicture &picture, QPrinter &printer);
