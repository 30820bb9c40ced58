// The ClassBench filter sets and header traces (../shared/data/classbench) as the tool's
// input: a filter set becomes one IPv4 list bound in on Ethernet1 (unit 0) and Ethernet25
// (unit 1) of the default switch, and its trace becomes packets, as JSON lines (arriving on the
// two ports in turn) and as a pcap of the same frames.
//
// Rule i of the set gets sequence number 10 (i + 1) and denies when i is a multiple of three,
// permits otherwise, so that verdicts differ by rule. Port ranges go on TCP and UDP rules only
// (the sets have none on other protocols); a trace header of protocol 1 is an ICMP packet whose
// type and code are the header's source port, as the chip keys them.
#pragma once

#include <string>
#include <vector>

namespace HalyardE2e {

struct ClassBenchFiles {
   std::string config;  // the list and its bindings
   std::string jsonl;   // the trace, in on Ethernet1 and Ethernet25 in turn
   std::string pcap;    // the same packets, for --in
   std::size_t rules = 0;
   std::size_t packets = 0;
};

// Writes the files of the set `name` (acl1_1k: filters `name`, trace `name`_trace) into
// `dir`.
ClassBenchFiles writeClassBenchFiles( const std::string& name, const std::string& dir );

// The configuration of the filter sets `names`, one after the other in one list "cb" (rule
// numbering runs on from set to set), bound as writeClassBenchFiles binds it. `rules` gets the
// count.
std::string classBenchConfig( const std::vector<std::string>& names, std::size_t* rules = nullptr );

}  // namespace HalyardE2e
