// The library's own C++ API beside the documented calls: a chosen chain read with a message on
// failure, the fingerprint with run options to any stream, a fingerprint file read back, and
// surveys of many files (one row per file and chain), and where the knot of a chain sits.
#pragma once

#include <string>
#include <vector>

#include "chain/naming.hpp"            // for tresk::NamingOptions, tresk::VoteOverClosures
#include "core/records.hpp"            // for ChainAtom, RowFile
#include "entry/survey.hpp"            // for tresk::SurveyFile, tresk::FormatSurveyRow
#include "preprocessing/readChain.hpp" // for tresk::ReadChain, tresk::ReadOptions
#include "scan/core.hpp"               // for tresk::FindKnotCore, tresk::CoreOptions
#include "scan/rows.hpp"               // for tresk::Fingerprint, tresk::ReadFingerprint
#include "scan/scan.hpp"               // for tresk::ScanOptions, tresk::WriteFingerprint
