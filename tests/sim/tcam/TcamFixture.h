// Shared fixture of the TCAM manager tests: two 32-port chips under one group manager with a
// small group table, so that exhaustion is a few entries away, and helpers that program
// entries on the chip the way the SDK would.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "platform/tcam/HalyardTcamGroupManager.h"
#include "sim/chip/ChipModel.h"
#include "sim/tcam/SimTcamEntryManager.h"
#include "sim/tcam/SimTcamGroupManager.h"

namespace Sim {

// Every onExhausted of one entry manager, by unit, in order.
struct ExhaustedLog : Halyard::HalyardTcamEntryManager::NotifieeConst {
   std::vector<U32> units;
   void onExhausted( U32 unit ) override { units.push_back( unit ); }
   std::vector<U32> take() { return std::exchange( units, {} ); }
};

// Every onRangeCheckersExhausted of a group manager, by unit, in order.
struct RangeCheckersLog : Halyard::HalyardTcamGroupManager::NotifieeConst {
   std::vector<U32> units;
   void onRangeCheckersExhausted( U32 unit ) override { units.push_back( unit ); }
   std::vector<U32> take() { return std::exchange( units, {} ); }
};

class TcamTest : public ::testing::Test {
 protected:
   static constexpr U32 kUnit = 0;
   static constexpr U32 kOther = 1;
   static constexpr U32 kIpCapacity = 3;

   static GroupTable smallTable() {
      using namespace Halyard;
      return GroupTable{
          { tcamGroupMacAcl, { Stage::Ifp, 50, 2, false } },
          { tcamGroupIpAcl, { Stage::Ifp, 60, kIpCapacity, false } },
          { tcamGroupAclMgmt, { Stage::Ifp, 95, 8, true } },
          { tcamGroupAclPortBlocking, { Stage::Ifp, 100, 4, true } },
          { tcamGroupIpAclVfp, { Stage::Vfp, 60, 2, false } },
          { tcamGroupIpAclEgress, { Stage::Efp, 60, 2, false } },
          { tcamGroupMirroringAcl2, { Stage::Ifp, 39, 2, false } },
      };
   }

   TcamTest() {
      gm->unitIs( kUnit, chip );
      gm->unitIs( kOther, otherChip );
   }

   Halyard::HalyardUnboundedTcamEntryManager::Ptr unbounded( Halyard::TcamGroupAssignment a ) {
      return gm->unboundedEntryManager( a );
   }

   // Programs `entry` to drop TCP packets to `port`, as the back-end does through the SDK.
   void dropTcpTo( U32 entry, U16 port, ChipModel* on = nullptr ) {
      ChipModel& c = on ? *on : chip;
      EXPECT_EQ( Status::Ok, c.qualifierIs( entry, QualId::L4DstPort, port, 0xFFFF ) );
      EXPECT_EQ( Status::Ok, c.actionIs( entry, ActionId::Drop, 0, 0 ) );
   }

   static Packet tcpTo( U16 dstPort, U16 srcPort = 1024 ) {
      return Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), srcPort, dstPort )
          .ingressPortIs( 1 )
          .egressPortIs( 2 );
   }

   ChipModel chip{ ChipConfig{ 32, 0, 4, 4 } };
   ChipModel otherChip{ ChipConfig{ 32, 1, 4, 4 } };
   // For a test that adds a unit of its own; declared ahead of the group manager, which
   // refers to it, so that it outlives it.
   ChipModel spareChip;
   SimTcamGroupManager::Ptr gm = SimTcamGroupManager::create( smallTable(), SdkCodes{} );
   Halyard::HalyardUnboundedTcamEntryManager::Ptr ip = unbounded( Halyard::tcamGroupIpAcl );
   Halyard::HalyardUnboundedTcamEntryManager::Ptr mac = unbounded( Halyard::tcamGroupMacAcl );
   Halyard::HalyardUnboundedTcamEntryManager::Ptr vfp = unbounded( Halyard::tcamGroupIpAclVfp );
   Halyard::HalyardBoundedTcamEntryManager::Ptr mgmt =
       gm->entryManager( Halyard::tcamGroupAclMgmt );
   const SdkCodes codes{};
};

}  // namespace Sim
