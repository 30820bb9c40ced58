// ClassBench filter sets and header traces (the public packet-classification benchmark data),
// and their programming as IFP entries: real rule sets for scale tests and benchmarks.
//
// Contract:
//   1. readRules and readTrace return an empty list when the file cannot be read; lines that do
//      not parse are skipped.
//   2. program() turns rules into entries in rule order, earlier rules at higher priority, so
//      that the chip's first hit is the first matching rule. A port range becomes a masked
//      qualifier when it is one aligned block, else a range checker (shared by equal ranges)
//      while the chip has one, else one entry per aligned block.
//   3. firstMatch() is the reference answer: the first rule that matches the header's keyed
//      ports (see packetOf), by plain comparison.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/chip/ChipModel.h"
#include "sim/chip/Packet.h"

namespace Sim::ClassBench {

struct Rule {
   U32 src = 0;
   U32 srcMask = 0;
   U32 dst = 0;
   U32 dstMask = 0;
   U16 srcPortLo = 0;
   U16 srcPortHi = 0xFFFF;
   U16 dstPortLo = 0;
   U16 dstPortHi = 0xFFFF;
   U8 proto = 0;
   U8 protoMask = 0;
};

struct Header {
   U32 src = 0;
   U32 dst = 0;
   U16 srcPort = 0;
   U16 dstPort = 0;
   U8 proto = 0;
};

std::vector<Rule> readRules( const std::string& path );
std::vector<Header> readTrace( const std::string& path );

// A packet with the header's fields, from port `in` to port `out`. The ports of a header are
// what the chip keys for its protocol: TCP and UDP ports; for ICMP the source port is type and
// code, and the destination port zero; for other protocols both are zero.
Packet packetOf( const Header& h, U32 in, U32 out );
std::pair<U16, U16> keyedPorts( const Header& h );

struct Programmed {
   std::vector<std::vector<EntryId> > entriesOfRule;  // the rules programmed, in order
   U32 entries = 0;
};

// Programs rules into `group` until `maxEntries` entries stand; each entry is installed and
// sets the CPU queue to its rule index modulo 8, so that verdicts differ by rule.
Programmed program( ChipModel& chip, GroupId group, const std::vector<Rule>& rules,
                    U32 maxEntries );

std::optional<std::size_t> firstMatch( const std::vector<Rule>& rules, const Header& h );

}  // namespace Sim::ClassBench
