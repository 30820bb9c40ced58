#include "tests/soak/SoakPools.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "platform/vesper/Enum.h"
#include "tests/support/ChipReadback.h"

namespace Soak {

namespace {

// Sorted: a pool handed back in another order holds the same classes.
void classesWritten( std::ostream& out, const char* what, const Halyard::IntfClassPool& pool ) {
   std::vector<U32> classes;
   for ( U32 i = 0; i < pool.size(); ++i ) {
      classes.push_back( pool.stack().at( i ) );
   }
   std::sort( classes.begin(), classes.end() );
   out << " " << what << " " << classes.size() << ":";
   for ( U32 c : classes ) {
      out << " " << c;
   }
   out << "\n";
}

void unitWritten( std::ostream& out, const HalyardCli::AclSwitch& sw, U32 unit ) {
   const Halyard::AclHelper& helper = sw.helper();
   const Sim::UnitUsage usage = sw.simSwitch().tcamUsage( unit );
   const Sim::ChipModel& chip = sw.simSwitch().chip( unit );
   out << "unit " << unit << "\n";
   for ( const Sim::GroupUsage& g : usage.groups ) {
      const auto chipEntries = chip.entries( static_cast<Sim::GroupId>( g.assignment ) ).size();
      out << " " << Vesper::stringValue( g.assignment ) << " used " << g.used << " chip "
          << chipEntries << " capacity " << g.capacity << " slices " << g.slices << "\n";
   }
   for ( std::size_t s = 0; s < usage.stages.size(); ++s ) {
      out << " stage " << s << " free slices " << usage.stages[s].freeSlices << "\n";
   }
   out << " rangeCheckers " << usage.rangeCheckersUsed << " udfChunks " << usage.udfChunksUsed
       << "\n";
   classesWritten( out, "ingress classes",
                   helper.halyardIntfClassData( unit )->freeAclIntfClass() );
   for ( const Acl::AclType type : { Acl::ip_, Acl::ipv6_, Acl::mac_ } ) {
      const auto sm = helper.getHalyardAclTypeDirectionFeatureSm( type, Acl::out_,
                                                                  Halyard::aclFeatureSecurity );
      out << " " << Vesper::stringValue( type );
      classesWritten( out, "egress classes", sm->unitData( unit )->freeIntfClass() );
   }
   for ( const auto& claim : helper.vfpAclTypeForUnit( unit )->vfpAclTypeForPort() ) {
      out << " VFP claim " << claim.key() << " " << claim.value() << "\n";
   }
   for ( U32 port = 0; port < chip.config().portCount; ++port ) {
      const U32 in = HalyardTest::ingressClass( chip, port );
      const U32 egress = HalyardTest::egressClass( chip, port );
      if ( in || egress ) {
         out << " port " << port << " classes " << in << " " << egress << "\n";
      }
   }
}

}  // namespace

std::string poolsText( const HalyardCli::AclSwitch& sw ) {
   std::ostringstream out;
   for ( U32 unit : sw.simSwitch().units() ) {
      unitWritten( out, sw, unit );
   }
   const Halyard::AclHelper& helper = sw.helper();
   out << "ACL records " << helper.halyardAclData().size() << "\n";
   for ( const auto& member : helper.halyardAclData() ) {
      out << " record " << member.key() << "\n";
   }
   out << "dirty ACLs " << helper.dirtyAcl().size() << "\n";
   out << "generic layer ACLs " << sw.machine().acls().size() << "\n";
   return out.str();
}

}  // namespace Soak
