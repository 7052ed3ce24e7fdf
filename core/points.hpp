// Plain records that cross to the GPU: the single-precision point and the subchain job.
// Kept apart from records.hpp so that the CUDA unit needs no Boost or std::string.
#pragma once

#include <cstdint>
#include <type_traits>

// A point of the packed single-precision buffer of the batch reduction.
struct fPointR3 {
  float x;
  float y;
  float z;
};

// One subchain to analyse in a scan; `begin`/`length` locate it in the packed buffer,
// `first`/`last` are 1-based atom positions and `firstId`/`lastId` the atoms' own numbers.
struct Job {
  int32_t begin;
  int32_t length;
  int32_t firstId;
  int32_t lastId;
  int32_t first;
  int32_t last;
};

static_assert(std::is_trivially_copyable_v<fPointR3>, "fPointR3 is copied to the GPU");
static_assert(std::is_trivially_copyable_v<Job>, "Job is copied to the GPU");
static_assert(sizeof(fPointR3) == 12 && sizeof(Job) == 24, "GPU records must stay packed");
