#pragma once

#include <QString>

// Decodes the character entities a caller may use for characters that are
// awkward on a command line.
QString decodeEntities(QString text);
