// The library's own C++ API beside the documented calls, for the tresk command and other
// applications: a chain read by path, the fingerprint with run options (threads, progress, log)
// to any stream, and a fingerprint file read back.
#pragma once

#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom, RowFile
#include "scan/rows.hpp"    // for tresk::Fingerprint, tresk::ReadFingerprint
#include "scan/scan.hpp"    // for tresk::ScanOptions, tresk::WriteFingerprint, FingerprintRows

namespace tresk {

// The chain in a file (plain xyz, PDB or mmCIF, optionally gzip-compressed), as ChainRead reads
// it; empty when the file cannot be read or holds no usable chain.
std::vector<ChainAtom> ReadChain(const std::string& path);

} // namespace tresk
