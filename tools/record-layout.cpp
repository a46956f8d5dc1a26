// Prints the layout of every configuration record's field table (name, offset, type code,
// size of each row). Its output on any target must equal tests/conf/golden/layout.txt:
//     record-layout > tests/conf/golden/layout.txt
#include <cstdio>

#include "tests/conf/record_layout.h"

int main() {
    fputs(wmtest::catalogue_layout().c_str(), stdout);
    return 0;
}
