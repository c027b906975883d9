#include "bridge/standard_stream_error.h"

namespace lomaris {

Text StandardStreamError::errorDescription() const {
    return stream_ == Stream::input ? u"Could not read standard input." : u"Could not write to standard output.";
}

const char* StandardStreamError::what() const noexcept {
    return stream_ == Stream::input ? "inputFailed" : "outputFailed";
}

}  // namespace lomaris
