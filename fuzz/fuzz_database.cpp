#include <cstddef>
#include <cstdint>

#include "jet/read_everything.h"

/// Takes the input for a database file, opens it and reads every field of every row. An exception other than
/// Failure ends the run, as does a reader that does not come to an end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    (void)platform::jet::ReadEverything({reinterpret_cast<const char*>(data), size}, "4073");
    return 0;
}
