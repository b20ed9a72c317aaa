#include "decoder/formats/Readers.h"
#include "decoder/process/Run.h"

int main() {
    quorvantis::decoder::run(quorvantis::decoder::readTIFF);
}
