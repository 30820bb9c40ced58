#include "sim/tcam/GroupTable.h"

#include <algorithm>
#include <array>

namespace Sim {

namespace {

using namespace Halyard;

struct GroupRow {
   TcamGroupAssignment assignment;
   Stage stage;
   U32 priority;
   bool wide;  // the full IPv6 key takes two narrow entries
};

constexpr GroupRow kRows[] = {
    { tcamGroupMacAcl, Stage::Ifp, 50, false },
    { tcamGroupIpAcl, Stage::Ifp, 60, false },
    { tcamGroupAclMgmt, Stage::Ifp, 95, false },
    { tcamGroupAclPortBlocking, Stage::Ifp, 100, false },
    { tcamGroupMacAclVfp, Stage::Vfp, 50, false },
    { tcamGroupIpAclVfp, Stage::Vfp, 60, false },
    { tcamGroupIpAclVni, Stage::Ifp, 70, false },
    { tcamGroupRouterAcl, Stage::Ifp, 80, false },
    { tcamGroupIp6Acl, Stage::Ifp, 59, true },
    { tcamGroupIp6AclVni, Stage::Ifp, 69, true },
    { tcamGroupIp6RouterAcl, Stage::Ifp, 79, true },
    { tcamGroupIp6AclVfp, Stage::Vfp, 59, true },
    { tcamGroupIp6StdAcl, Stage::Ifp, 58, false },
    { tcamGroupIp6StdAclVfp, Stage::Vfp, 58, false },
    { tcamGroupMacAclEgress, Stage::Efp, 50, false },
    { tcamGroupIpAclEgress, Stage::Efp, 60, false },
    { tcamGroupRouterAclEgress, Stage::Efp, 80, false },
    { tcamGroupIp6AclEgress, Stage::Efp, 59, true },
    { tcamGroupIp6StdAclPortEgress, Stage::Efp, 58, false },
    { tcamGroupIp6StdAclRouterEgress, Stage::Efp, 78, false },
    { tcamGroupIp6RouterAclEgress, Stage::Efp, 79, true },
    { tcamGroupUrpfTHxV4ExceptionAcl, Stage::Ifp, 90, false },
    { tcamGroupUrpfTHxV4V6ExceptionAcl, Stage::Ifp, 89, false },
    { tcamGroupMirroringAcl1, Stage::Ifp, 40, false },
    { tcamGroupMirroringAcl2, Stage::Ifp, 39, false },
    { tcamGroupMirroringAcl3, Stage::Ifp, 38, false },
    { tcamGroupMirroringAcl4, Stage::Ifp, 37, false },
};

std::size_t stageIndex( Stage s ) {
   return static_cast<std::size_t>( s );
}

U32 boundedCapacity( TcamGroupAssignment a ) {
   return a == tcamGroupAclMgmt ? kMgmtGroupEntries : kPortBlockingGroupEntries;
}

}  // namespace

GroupTable defaultGroupTable( const StageCapacities& stages ) {
   const std::array<U32, 3> entries = { stages.vfp.entries(), stages.ifp.entries(),
                                        stages.efp.entries() };
   GroupTable table;
   for ( const GroupRow& row : kRows ) {
      const U32 stage = entries[stageIndex( row.stage )];
      const bool bounded = isBoundedAssignment( row.assignment );
      GroupDef def{ row.stage, row.priority, 0, bounded, row.wide };
      def.capacity = bounded ? std::min( stage, boundedCapacity( row.assignment ) )
                             : ( row.wide ? stage / 2 : stage );
      table[row.assignment] = def;
   }
   return table;
}

}  // namespace Sim
