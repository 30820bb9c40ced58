// Internal to the configuration reader: the match and options of one permit or deny line,
// after its action word.
#pragma once

#include "cli/config/ConfigWords.h"
#include "platform/acl/AclTypes.h"
#include "platform/acl/RuleConfig.h"

namespace HalyardCli::ConfigText {

// An IPv4 or IPv6 rule: PROTO SRC [PORTS] DST [PORTS] [TYPE [CODE]] [OPTIONS], or for a
// standard list SRC [log]. Sets the filter and the log flag.
Acl::RuleConfig readIpRule( WordCursor& words, Acl::AclType type, bool standard );

// A MAC rule: SRC DST [ETHERTYPE] [OPTIONS].
Acl::RuleConfig readMacRule( WordCursor& words );

// Options every family shares, and the record of which options a rule has given, so that
// each stands at most once.
class OptionSet {
 public:
   // Fails with "OPTION given twice: expected each option once" on a repeat.
   void note( std::string_view option );

 private:
   std::vector<std::string_view> seen_;
};

// payload [header-start] OFFSET/PATTERN/MASK...; the word "payload" already taken.
Acl::PayloadSpec readPayload( WordCursor& words );
// V MASK after "vlan" or "inner-vlan"; V 0 to 4095, MASK 0 to 0xfff.
void readVlan( WordCursor& words, std::string_view what, U16& vlan, U16& mask );

}  // namespace HalyardCli::ConfigText
