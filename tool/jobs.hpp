#pragma once

#include "tool/files.hpp"

namespace ztdecode::tool {

// All files by as many jobs as the options say, their outputs in their order: a large file in pieces, others
// several at once. Gives the exit status.
int decode_by_jobs(const FileDecoding& decoding);

}  // namespace ztdecode::tool
