// Everything libtresk exports, in one include: records, preprocessing services, every
// subsystem of the knot engine and the library's own API (entry/api.hpp).
#pragma once

#include "core/records.hpp"
#include "preprocessing/chainprep.hpp"
#include "crossings/crossings.hpp"
#include "alexander/polynomial.hpp"
#include "alexander/determinant.hpp"
#include "knots/whichKnot.hpp"
#include "chain/direction.hpp"
#include "chain/manyClosures.hpp"
#include "scan/rows.hpp"
#include "scan/grid.hpp"
#include "scan/prepare.hpp"
#include "scan/scan.hpp"
#include "reduction/KknotsSimpler_closed.hpp"
#include "entry/entry.hpp"
#include "entry/api.hpp"
