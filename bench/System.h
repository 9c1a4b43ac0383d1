// What the bench asks of the system: timers, cold caches, the heap, resident memory and child
// processes. Each call says when the platform cannot give what it asks for, so that the bench
// builds everywhere and reports what it could not measure instead of a wrong figure.
#pragma once

#include <cstdint>
#include <string>

namespace ZeKLBench {

// Seconds on a steady clock, or of the process's CPU time with `cpuTime` (on a machine shared
// with other work, time spent waiting for a core then does not count).
double Now(bool cpuTime);

// Writes over a buffer twice the size of the last-level cache, a line at a time, so that the
// next timed run starts with cold CPU caches as a read in an application does.
void ColdCaches();

// Gives the heap's free memory back to the system (glibc's malloc_trim); false where the C
// library cannot.
bool TrimHeap();

// Resident memory of this process now and at its peak, in kB; false where the system does not
// tell (no /proc). ResetPeak makes the peak the current size (Linux 4.0 and later).
bool ResidentKb(uint64_t& current, uint64_t& peak);
void ResetPeak();

// Runs this program again with `arguments` and gives its standard output; false when the
// platform has no fork and exec or the child failed.
bool RunChild(const std::string& self, const std::string& arguments, std::string& output);
// The path of this program; empty where it cannot be had.
std::string SelfPath();

// Cost of first touching fresh memory (page faults), in ms per MB; negative where it cannot
// be measured.
double FreshMemoryMsPerMB();

std::string CpuName();
std::string LoadAverage();
long ProcessorCount();

// A new folder below the system's temporary folder; empty on failure.
std::string MakeTemporaryFolder();
bool MakeFolder(const std::string& path);
bool RemoveFolder(const std::string& path);
uint64_t FileSize(const std::string& path);

}  // namespace ZeKLBench
