#include "decoder/Readers.h"
#include "decoder/Run.h"

int main() {
    quorvantis::decoder::run(quorvantis::decoder::readTIFF);
}
