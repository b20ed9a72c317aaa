#include "cli/StartUp.h"

int main(int count, char** arguments) {
    return quorvantis::startUp({arguments + (count > 0 ? 1 : 0), arguments + count});
}
