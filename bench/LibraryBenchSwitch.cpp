// LibrarySwitch and the ClassBench rule sets as configuration text (LibraryBench.h).
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>

#include "bench/LibraryBench.h"
#include "fennel/HalyardView.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/pylon/ValueText.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Clock.h"
#include "platform/vesper/Dir.h"
#include "platform/wiring/AgentRecords.h"
#include "sim/catalog/ChipCatalog.h"

namespace HalyardBench {

namespace {

namespace ClassBench = Sim::ClassBench;

// Narrow entries per IFP slice and slices of the grown kind: 98,304 narrow rows, 49,152 wide
// entries, room for acl1_10k with its ranges as blocks.
constexpr U32 kSliceEntries = 4096;
constexpr U32 kIfpSlices = 24;
constexpr U32 kPorts = 8;

std::string address( U32 addr, U32 mask ) {
   if ( mask == 0 ) {
      return "any";
   }
   return Pylon::valueToStrep( Pylon::IpAddr( addr & mask ) ) + "/" +
          std::to_string( std::countl_one( mask ) );
}

std::string ports( U16 lo, U16 hi, bool ranges ) {
   if ( lo == 0 && hi == 0xFFFF ) {
      return "";
   }
   if ( lo == hi ) {
      return " eq " + std::to_string( lo );
   }
   return ranges ? " range " + std::to_string( lo ) + " " + std::to_string( hi ) : "";
}

bool hasPorts( U8 proto, U8 protoMask ) {
   return protoMask && ( proto == 6 || proto == 17 );
}

}  // namespace

void fail( const std::string& why ) {
   std::fprintf( stderr, "halyard-bench: %s\n", why.c_str() );
   std::abort();
}

HalyardCli::AclSetup parsedConfig( const std::string& text, const std::string& name ) {
   try {
      return HalyardCli::parseConfig( text, name );
   } catch ( const HalyardCli::ConfigError& e ) {
      fail( "configuration refused: " + e.diagnostics().front().text() );
   }
}

Sim::SwitchProfile grownProfile() {
   Sim::SwitchProfile profile;
   profile.nameIs( "bench" );
   Sim::UnitDef def;
   def.unit = 0;
   def.kind = "tomahawk";
   def.module = 1;
   profile.unitIs( def );
   for ( U32 port = 1; port <= kPorts; ++port ) {
      profile.ethernetIs( port, 0, port );
   }
   return profile;
}

Sim::SwitchOptions grownOptions() {
   Sim::ChipKind kind = *Sim::chipKindByName( "tomahawk" );
   kind.name = "tomahawk-bench";
   kind.description = "Tomahawk-class, IFP grown for the scaling runs";
   // A chip type no catalog kind has, so that its row joins the chip table.
   kind.chipInfo =
       HalyardCentral::ChipInfo( kind.chipInfo.familyCode(), 0xbe00u, kind.chipInfo.revisionId() );
   kind.ifp.narrowEntries.assign( kIfpSlices, kSliceEntries );
   Sim::SwitchOptions options;
   options.unitKinds.emplace( 0, kind );
   return options;
}

WiredBackEnd wireBackEnd( Sim::SimSwitch& sw,
                          const Halyard::HalyardTcamGroupManager::Ptr& groupManager,
                          const HalyardCli::AclSetup& setup ) {
   WiredBackEnd w;
   w.helper = Halyard::aclHelperFactory( sw.vlanTopoSliceStatus(), sw.vlanTopoBlockedStatus(),
                                         sw.hcsd(), groupManager, setup.config, setup.paramConfig,
                                         sw.statusDp(), sw.aclHwStatus(), sw.l3SliceAgentStatus(),
                                         sw.l3IntfStatus(), sw.hasFabric() );
   w.entity = Halyard::aclSmEntityFactory();
   w.entity->aclSmIs( Fennel::fennelCommonSmDataFactory(), setup.config, setup.paramConfig,
                      Vesper::dirFactory( "intfConfig" ), setup.intfConfig,
                      Vesper::dirFactory( "hwConfig" ), sw.statusDp(),
                      Errdisable::causeStatusFactory(), sw.lagInputConfig(), w.helper,
                      Vesper::clockFactory(), Bridging::configFactory(),
                      Interface::subIntfStatusDirFactory( "subIntfStatus" ),
                      Interface::subIntfConfigDirFactory( "subIntfConfig" ) );
   w.machine = Fennel::GenericAclSm::from( w.entity->aclSm() );
   if ( !w.machine ) {
      fail( "the agent's entity built no generic machine" );
   }
   w.helper->hwInit();
   w.machine->markStarted();
   return w;
}

void unwire( WiredBackEnd& wired ) {
   // The machine refers to the helper, and the helper to the switch's records.
   wired.machine = nullptr;
   wired.entity->aclSmDel();
   wired.entity = nullptr;
   wired.helper = nullptr;
}

struct LibrarySwitch::Wiring {
   Wiring() { Fennel::registerGenericAclSm(); }
   ~Wiring() { Fennel::aclSmFactoryIs( {} ); }
   Vesper::ActivityLockGuard activityLock;
};

std::string classBenchPath( const std::string& name ) {
   return HALYARD_SOURCE_DIR "/../shared/data/classbench/" + name;
}

const std::vector<ClassBench::Rule>& classBenchRules( const std::string& name ) {
   static std::map<std::string, std::vector<ClassBench::Rule> > sets;
   auto& rules = sets[name];
   if ( rules.empty() ) {
      rules = ClassBench::readRules( classBenchPath( name ) );
      if ( rules.empty() ) {
         fail( "no rules read from " + classBenchPath( name ) );
      }
   }
   return rules;
}

std::string classBenchConfig( const std::vector<ClassBench::Rule>& rules, std::size_t count,
                              bool portRanges ) {
   std::ostringstream out;
   out << "ip access-list " << kListName << "\n";
   for ( std::size_t i = 0; i < count && i < rules.size(); ++i ) {
      const ClassBench::Rule& r = rules[i];
      const bool l4 = hasPorts( r.proto, r.protoMask );
      out << "   " << 10 * ( i + 1 ) << ( i % 3 == 0 ? " deny " : " permit " )
          << ( r.protoMask ? std::to_string( r.proto ) : std::string( "ip" ) ) << " "
          << address( r.src, r.srcMask )
          << ( l4 ? ports( r.srcPortLo, r.srcPortHi, portRanges ) : "" ) << " "
          << address( r.dst, r.dstMask )
          << ( l4 ? ports( r.dstPortLo, r.dstPortHi, portRanges ) : "" ) << "\n";
   }
   out << "interface Ethernet1\n   ip access-group " << kListName << " in\n";
   return out.str();
}

std::string entriesConfig( std::size_t entries ) {
   const auto& rules = classBenchRules( "acl1_10k" );
   // One entry per rule, one more for a permit with a port term (its later fragments); the
   // closing rule takes one.
   std::size_t count = 0;
   for ( std::size_t made = 1; count < rules.size() && made < entries; ++count ) {
      const ClassBench::Rule& r = rules[count];
      const bool eqPort = hasPorts( r.proto, r.protoMask ) &&
                          ( ( r.srcPortLo == r.srcPortHi ) || ( r.dstPortLo == r.dstPortHi ) );
      made += ( eqPort && count % 3 != 0 ) ? 2 : 1;
   }
   return classBenchConfig( rules, count, false );
}

LibrarySwitch::LibrarySwitch( const std::string& configText, bool apply )
    : wiring_( std::make_unique<Wiring>() ),
      setup_( parsedConfig( configText, "bench.acl" ) ),
      switch_( std::make_unique<Sim::SimSwitch>( grownProfile(), grownOptions() ) ),
      wired_( wireBackEnd( *switch_, switch_->groupManager(), setup_ ) ) {
   if ( apply ) {
      settle();
   }
}

LibrarySwitch::~LibrarySwitch() {
   unwire( wired_ );
}

void LibrarySwitch::settle() {
   wired_.machine->settle();
}

Fennel::AclKey LibrarySwitch::listKey() const {
   return Fennel::AclKey( kListName, Acl::AclType::ip, Acl::AclDirection::in, false,
                          Fennel::AclVlanIdOrNone( 0 ) );
}

U32 LibrarySwitch::installedEntries() const {
   const auto units = Fennel::aclUnits( *wired_.helper, listKey() );
   if ( units.size() != 1 || !units.front().installed ) {
      fail( "the list does not stand installed on the unit" );
   }
   return units.front().entries;
}

std::vector<U32> LibrarySwitch::entryIds() const {
   std::vector<U32> entries;
   const Halyard::HalyardAclData::Ptr acl = wired_.helper->halyardAclData( listKey() );
   if ( !acl ) {
      fail( "the back-end holds no record of the list" );
   }
   for ( const auto& unit : acl->unitData() ) {
      for ( const Halyard::AclRuleData& rule : unit.value()->common()->aclRule() ) {
         for ( const Halyard::AclEntryList& list : rule.entryList() ) {
            for ( const auto& entry : list.entry() ) {
               entries.push_back( entry.key() );
            }
         }
      }
   }
   return entries;
}

}  // namespace HalyardBench
