#pragma once

class QString;

// The text with a blank for each line end that it holds.
QString OneLine(const QString& text);
