#include "shared/system/mapped_file.h"

namespace zenfo::host {

void MappedFile::prepare(LossHandler&) {}

bool MappedFile::open(const std::string&) { return false; }

void MappedFile::close() {}

}  // namespace zenfo::host
