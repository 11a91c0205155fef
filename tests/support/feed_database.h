#pragma once

#include <string>

#include "support/texts.h"

/// Writes a database of records with the refs 10, 20, ... and recorded times from 2005-03-12 12:00:00 on, a second
/// apart. The texts are UTF-8.
void WriteFeedDatabase(const std::string& path, const Texts& records);
