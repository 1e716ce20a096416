// Images and compressed files, read and written whole.
#pragma once

#include <QImage>

#include "window/session.h"

namespace marovia {

// A compressed file by its name, an image by its content: of those that are read here, else of
// those that the toolkit reads. Throws Error.
Subject ReadSubject(const QString& file, const Recipe& recipe);
// Colour becomes grey.
Image GreyOf(const QImage& picture);

// The names of the files to choose from, as a dialog wants them.
QString OpenFilter();
QString PictureFilter();

// Either all of it gets there, or an earlier file of that name stays as it was. Throws Error.
void WriteBytes(const QString& file, ByteView bytes);
// As what the extension says.
void WritePicture(const QString& file, const Image& picture);

}  // namespace marovia
