#pragma once

#include <QtCore/QString>
#include <QtGui/QFont>
#include <QtGui/QPainterPath>

// Outlines of the one typeface on all pictures: Inter, from the package fonts-inter.

// False if the typeface isn't installed: its place would be taken by whatever the system has.
bool HasTypeface();

// A text's outlines, unhinted, capitals dCapHeight high, on the baseline y = 0, ink starting at x = 0.
QPainterPath TextOutline(const QString& strText, QFont::Weight weight, double dCapHeight);
