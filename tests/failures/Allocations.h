#pragma once

/// Allocations of this thread left until one fails; below zero none does.
extern thread_local int LeftAllocations;
