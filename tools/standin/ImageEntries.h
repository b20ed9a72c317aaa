#pragma once

#include <vector>

#include "HistoryFile.h"
#include "ImageLibrary.h"

namespace quorvantis::standin {

/// The images as entries of the history, each as if its file had been copied when it was last written. Throws
/// FileError when one of them is gone.
std::vector<StandinEntry> historyEntries(const ImageLibrary& library);

}  // namespace quorvantis::standin
