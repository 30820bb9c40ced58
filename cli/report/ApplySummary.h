// What `apply` reports: the state of the switch after the last configuration, per unit, read
// from the generic layer's ACL state, the back-end's records and the simulated TCAM managers.
// The text and JSON writers format the same summary.
#pragma once

#include <array>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/switch/AclSwitch.h"
#include "platform/acl/AclTypes.h"
#include "platform/vesper/Types.h"
#include "sim/chip/ChipTypes.h"

namespace HalyardCli {

// One ACL instance on one unit.
struct AclOnUnit {
   std::string name;
   Acl::AclType type = Acl::AclType::ip;
   Acl::AclDirection direction = Acl::AclDirection::in;
   U16 vlan = 0;  // 0: bound to ports
   bool installed = false;
   bool dirty = false;
   std::optional<std::string> error;  // why it does not stand on this unit; nullopt: it does
   U32 entries = 0;
   std::vector<U32> expanded;  // sequence numbers of rules whose ranges went in as blocks

   bool stands() const { return installed && !dirty && !error; }
};

struct GroupOnUnit {
   std::string name;  // tcamGroupIpAcl
   U32 assignment = 0;
   std::string stage;  // VFP, IFP, EFP
   bool wide = false;
   U32 used = 0;
   U32 capacity = 0;
   U32 slices = 0;
};

struct StageSlices {
   std::string stage;
   U32 slices = 0;
   U32 free = 0;
};

struct UnitSummary {
   U32 unit = 0;
   std::string chip;  // the chip kind: trident3
   std::vector<AclOnUnit> acls;
   std::vector<GroupOnUnit> groups;  // every group of the unit, by assignment
   std::vector<StageSlices> stages;  // stages divided into slices
   U32 rangeCheckersUsed = 0;
   U32 rangeCheckerCapacity = 0;
   U32 freeClasses = 0;
};

// A rule whose port ranges went in as aligned masked blocks, and what it cost.
struct ExpandedSummary {
   std::string acl;  // instanceName()
   U32 seq = 0;
   U32 entries = 0;              // per unit, as blocks
   U32 entriesWithCheckers = 0;  // per unit, had its ranges found checkers
};

struct ApplySummary {
   std::string switchName;
   std::vector<UnitSummary> units;
   std::vector<ExpandedSummary> expanded;
   std::vector<std::string> bindingErrors;

   // Every ACL stands installed on every unit.
   bool allStand() const;
};

ApplySummary summarize( const AclSwitch& sw );

void writeApplyText( const ApplySummary& summary, std::ostream& out );
// The design's form: {"units":[{"unit", "chip", "acls", "groups", "rangeCheckers",
// "freeClasses"}]}.
nlohmann::ordered_json applyJson( const ApplySummary& summary );

// What a create error means, for the operator.
std::string createErrorText( Fennel::AclCreateError error );

}  // namespace HalyardCli
