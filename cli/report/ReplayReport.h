// What `replay` writes: a line (or with --json an object) per packet as it is replayed, then
// the totals and the hits per rule.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <vector>

#include "cli/replay/Replayer.h"

namespace HalyardCli {

class ReplayWriter {
 public:
   virtual ~ReplayWriter() = default;
   virtual void packet( const PacketOutcome& outcome ) = 0;
   // `acls`: the generic layer's ACL state, for the rules that no packet hit.
   virtual void finish( const ReplayTotals& totals, const Fennel::GenericAclSm& machine ) = 0;
};

// Replays every packet in order, handing each outcome to the writer, then finishes it.
// `progress` hears the count of packets done after each one.
void replayAll( Replayer& replayer, const std::vector<Fennel::Packet>& packets,
                ReplayWriter& writer, const Fennel::GenericAclSm& machine,
                const std::function<void( U32 )>& progress = {} );

// Text: a header, one line per packet (with `check`, whether it agrees, and where it does not
// the difference beneath), then the totals and the hits per rule.
std::unique_ptr<ReplayWriter> replayTextWriter( std::ostream& out, bool check );

// JSON lines: {"packet", "verdict", "acls":[{"name", "direction", "rule"}], "reference",
// "agree", "egress", "cpu"} per packet ("reference" and "agree" with `check`), then
// {"summary":{"packets", "permit", "deny", "disagree"}}. The differences go to `err`, one line
// each.
std::unique_ptr<ReplayWriter> replayJsonWriter( std::ostream& out, std::ostream& err, bool check );

}  // namespace HalyardCli
