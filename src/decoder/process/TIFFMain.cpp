#include "decoder/formats/Readers.h"
#include "decoder/process/Run.h"

int main(int, char** arguments) {
    quorvantis::decoder::run(quorvantis::decoder::readTIFF, arguments);
}
