// The library's own C++ API beside the documented calls, for the tresk command and other
// applications: a chosen chain read with a message on failure, the fingerprint with run options
// (threads, progress, log) to any stream, and a fingerprint file read back.
#pragma once

#include <string>
#include <vector>

#include "chain/naming.hpp"            // for tresk::NamingOptions, tresk::VoteOverClosures
#include "core/records.hpp"            // for ChainAtom, RowFile
#include "preprocessing/readChain.hpp" // for tresk::ReadChain, tresk::ReadOptions
#include "scan/rows.hpp"               // for tresk::Fingerprint, tresk::ReadFingerprint
#include "scan/scan.hpp"               // for tresk::ScanOptions, tresk::WriteFingerprint
