// Shared fixture of the chip model tests: a 32-port chip with one group per stage, and helpers
// that create, program and install entries in one line.
#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include "sim/chip/ChipModel.h"

namespace Sim {

inline void PrintTo( Status s, std::ostream* os ) {
   *os << statusName( s );
}
inline void PrintTo( const Verdict& v, std::ostream* os ) {
   *os << v.text();
}

class ChipTest : public ::testing::Test {
 protected:
   static constexpr GroupId kVfp = 1;
   static constexpr GroupId kIfp = 10;
   static constexpr GroupId kEfp = 20;
   static constexpr U32 kPorts = 32;

   ChipTest() {
      EXPECT_EQ( Status::Ok, chip.groupCreate( kVfp, Stage::Vfp, 5 ) );
      EXPECT_EQ( Status::Ok, chip.groupCreate( kIfp, Stage::Ifp, 5 ) );
      EXPECT_EQ( Status::Ok, chip.groupCreate( kEfp, Stage::Efp, 5 ) );
   }

   // A new entry of `group` with `priority`, not yet installed.
   EntryId entry( GroupId group, U32 priority = 0 ) {
      auto id = chip.entryCreate( group );
      EXPECT_TRUE( id.has_value() );
      EXPECT_EQ( Status::Ok, chip.entryPriorityIs( *id, priority ) );
      return *id;
   }
   // A new, installed entry of `group` that drops whatever matches `q` under data and mask.
   EntryId dropOn( GroupId group, QualId q, U64 data, U64 mask, U32 priority = 0 ) {
      EntryId e = entry( group, priority );
      EXPECT_EQ( Status::Ok, chip.qualifierIs( e, q, data, mask ) );
      EXPECT_EQ( Status::Ok, chip.actionIs( e, ActionId::Drop, 0, 0 ) );
      install( e );
      return e;
   }
   void install( EntryId e ) { EXPECT_EQ( Status::Ok, chip.entryInstall( e ) ); }

   // A TCP packet from port 1 to port 2, unicast.
   static Packet tcp( U16 dstPort = 80 ) {
      return Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), 1024, dstPort )
          .ingressPortIs( 1 )
          .egressPortIs( 2 );
   }

   ChipModel chip{ ChipConfig{ kPorts, 0, 32, 16 } };
};

}  // namespace Sim
