#include "tests/acl/bringup/MgmtEntryExpectations.h"

#include <sstream>

#include "acl/HalyardAclHelperFpText.h"
#include "platform/halyard/HalyardAclFeature.h"
#include "sim/sdk/SdkValues.h"
#include "sim/sdk/SimSdk.h"

namespace AclBringupTest {

namespace {

using Halyard::AclManagementTcams;
using Sim::ActionId;
using Sim::QualId;

// What the chip and the fp lines of one unit depend on.
struct UnitFacts {
   U32 unit;
   bcm_pbmp_t all;         // PBMP_ALL
   bcm_pbmp_t frontPanel;  // PBMP_PORT_ALL
   bcm_pbmp_t none;
   std::optional<ActionId> hgCancel;
   bool groupF;
};

UnitFacts unitFacts( BringupSwitch& sw, U32 unit ) {
   Sim::SimSdk& sdk = sw.sim().sdk();
   const Sim::ChipKind& kind = sw.kind( unit );
   UnitFacts f{ unit, sdk.PBMP_ALL( int( unit ) ), sdk.PBMP_PORT_ALL( int( unit ) ), {},
                {},   kind.probes.groupF };
   if ( kind.attribute( HalyardCentral::ChipAttribute::needsHgTrunkCancel ) ) {
      f.hgCancel =
          kind.probes.groupC ? ActionId::HgTrunkResolveCancel : ActionId::TrunkLoadBalanceCancel;
   }
   return f;
}

Sim::InPortsValue inPorts( const bcm_pbmp_t& data, const bcm_pbmp_t& mask ) {
   return { Sim::portBitmapOf( data ), Sim::portBitmapOf( mask ) };
}

U64 stp( Sim::StpState s ) {
   return static_cast<U64>( s );
}

// The actions of setActions for an ingress IFP deny.
void denyActions( const UnitFacts& f, bool log, EntryFace& face ) {
   if ( !log ) {
      face.actions[ActionId::SwitchToCpuCancel] = {};
      face.actions[ActionId::CosQCpuNew] = { 0, 0 };
   }
   face.portActions[ActionId::EgressMask] = Sim::portBitmapOf( f.frontPanel );
   if ( f.hgCancel ) {
      face.actions[*f.hgCancel] = {};
   }
   face.actions[ActionId::Drop] = {};
   if ( log ) {
      face.actions[ActionId::PrioIntNew] = { 10, 0 };
      face.actions[ActionId::CopyToCpu] = { 1, 3 };
   }
}

constexpr std::pair<U64, U64> noSkip{ 0, 0x40 };

ExpectedEntry portBlock( const UnitFacts& f, U32 id ) {
   ExpectedEntry e{ id, "Port blocking entry for ACL updates", {}, true, false };
   denyActions( f, false, e.face );
   e.face.inPorts = inPorts( f.none, f.all );
   e.face.quals[QualId::DstClassL2] = noSkip;
   return e;
}

ExpectedEntry stpEntry( const UnitFacts& f, U32 id, bool blocking, bool mirrorOnDrop,
                        bool install ) {
   ExpectedEntry e{ id,
                    blocking ? "Prevent ACL logging on STP-blocked ports"
                             : "Prevent ACL logging on STP-learning ports",
                    {},
                    false,
                    install };
   e.face.quals[QualId::IngressStpState] = {
       stp( blocking ? Sim::StpState::Block : Sim::StpState::Learn ), 0xff };
   e.face.quals[QualId::DstClassL2] = noSkip;
   e.face.inPorts = inPorts( f.all, f.all );
   if ( mirrorOnDrop ) {
      e.face.quals[QualId::SrcClassField] = { 0x10, 0x10 };
   }
   e.face.actions[ActionId::CosQCpuNew] = { 0, 0 };
   return e;
}

ExpectedEntry vfpEntry( const UnitFacts& f, U32 id, U32 srcClass, bool install ) {
   ExpectedEntry e{ id, "", {}, true, install };
   e.face.inPorts = inPorts( f.all, f.all );
   e.face.quals[QualId::SrcClassField] = { srcClass, srcClass };
   e.face.quals[QualId::DstClassL2] = noSkip;
   switch ( srcClass ) {
      case 0x18:
         e.purpose = "Log and drop marked ACL packets";
         e.permanent = false;
         e.face.quals[QualId::IngressStpState] = { stp( Sim::StpState::Forward ), 0xff };
         denyActions( f, true, e.face );
         break;
      case 0x08:
         e.purpose = "Drop marked ACL packets";
         denyActions( f, false, e.face );
         break;
      default:
         e.purpose = "Log marked ACL packets";
         e.face.actions[ActionId::PrioIntNew] = { 10, 0 };
         e.face.actions[ActionId::CopyToCpu] = { 1, 3 };
         break;
   }
   return e;
}

ExpectedEntry vlanBlock( const UnitFacts& f, U32 id, bool install ) {
   ExpectedEntry e{ id, "VLAN blocking entry for ACL updates", {}, false, install };
   denyActions( f, false, e.face );
   e.face.quals[QualId::InterfaceClassL2] = { 0x04, 0x04 };
   e.face.quals[f.groupF ? QualId::MyStationHit : QualId::L3Routable] = { 1, 1 };
   e.face.quals[QualId::DstClassL2] = noSkip;
   e.face.inPorts = inPorts( f.all, f.all );
   return e;
}

ExpectedEntry egressBlock( const UnitFacts& f, U32 id ) {
   ExpectedEntry e{ id, "Egress Port blocking entry for ACL updates", {}, true, false };
   e.face.inPorts = inPorts( f.all, f.all );
   e.face.portActions[ActionId::EgressMask] = Sim::PortBitmap();
   e.face.quals[QualId::DstClassL2] = noSkip;
   return e;
}

// ---- fp lines

class FpScript {
 public:
   explicit FpScript( const UnitFacts& f ) : f_( f ) {}

   void qual( U32 e, const std::string& rest ) { lines_.push_back( q( e ) + rest ); }
   void action( U32 e, const std::string& rest ) { lines_.push_back( a( e ) + rest ); }
   void install( U32 e, bool installed ) {
      if ( installed ) {
         lines_.push_back( "fp entry install " + std::to_string( e ) );
      }
   }
   void deny( U32 e, bool log ) {
      if ( !log ) {
         action( e, " SwitchToCpuCancel" );
         action( e, " CosQCpuNew 0" );
      }
      action( e, " EgressMask " + Halyard::fpPbmpText( f_.frontPanel ) );
      if ( f_.hgCancel ) {
         action( e, " HgTrunkCancel" );
      }
      action( e, " Drop" );
      if ( log ) {
         logCopy( e );
      }
   }
   void logCopy( U32 e ) {
      action( e, " PrioIntNew 10" );
      action( e, " CopyToCpu 1 3" );
   }
   void inPorts( U32 e, const bcm_pbmp_t& data ) {
      qual( e, " InPorts " + Halyard::fpPbmpText( data ) + " " + Halyard::fpPbmpText( f_.all ) );
   }
   void noSkip( U32 e ) { qual( e, " DstClassL2 0 0x40" ); }
   void stpState( U32 e, Sim::StpState s ) {
      qual( e, " IngressStpState " +
                   std::to_string( static_cast<int>( Sim::SdkValues::sdkStpState( s ) ) ) +
                   " 0xFF" );
   }

   const std::vector<std::string>& lines() const { return lines_; }

 private:
   static std::string q( U32 e ) { return "fp qual " + std::to_string( e ); }
   static std::string a( U32 e ) { return "fp action add " + std::to_string( e ); }

   const UnitFacts& f_;
   std::vector<std::string> lines_;
};

HalyardTest::AgentOptions optionsOf( const SwitchLayout& layout,
                                     const std::vector<Halyard::TcamGroupAssignment>& missing ) {
   HalyardTest::AgentOptions options;
   options.hwInit = false;
   if ( !missing.empty() ) {
      options.sim.groupTable = HalyardTest::groupTableWithout(
          HalyardTest::catalogKind( layout.kinds.front() ), missing );
   }
   return options;
}

}  // namespace

BringupSwitch::BringupSwitch( const SwitchLayout& layout,
                              const std::vector<Halyard::TcamGroupAssignment>& missingGroups )
    : AgentSwitch( layout, optionsOf( layout, missingGroups ) ), layout_( layout ) {}

U32 BringupSwitch::mgmtEntry( Halyard::AclManagementTcams offset ) const {
   return boundedManager( Halyard::tcamGroupAclMgmt ).entryBase() + offset;
}

U32 BringupSwitch::portBlockingEntry( Halyard::AclPortBlockingTcams offset ) const {
   return boundedManager( Halyard::tcamGroupAclPortBlocking ).entryBase() + offset;
}

std::vector<U32> BringupSwitch::managementEntriesInOrder() const {
   using namespace Halyard;
   return { portBlockingEntry( aclMgmtTcamPortBlock1 ),
            portBlockingEntry( aclMgmtTcamPortBlock2 ),
            mgmtEntry( aclMgmtTcamStpBlock ),
            mgmtEntry( aclMgmtTcamStpLearn ),
            mgmtEntry( aclMgmtTcamVfpDropLog ),
            mgmtEntry( aclMgmtTcamVfpDrop ),
            mgmtEntry( aclMgmtTcamVfpLog ),
            mgmtEntry( aclMgmtTcamVlanBlock ),
            portBlockingEntry( aclMgmtTcamEgressBlock1 ),
            portBlockingEntry( aclMgmtTcamEgressBlock2 ) };
}

EntryFace entryFace( Sim::ChipModel& chip, U32 entry ) {
   EntryFace face;
   for ( std::size_t q = 0; q < Sim::kQualCount; ++q ) {
      const auto id = static_cast<QualId>( q );
      if ( id == QualId::IpFrag || id == QualId::IpType || Sim::qualWidth( id ) > 8 ) {
         continue;
      }
      if ( const auto v = chip.qualifier( entry, id ) ) {
         face.quals[id] = { v->dataU64(), v->maskU64() };
      }
   }
   face.inPorts = chip.inPorts( entry );
   for ( std::size_t a = 0; a < Sim::kActionCount; ++a ) {
      const auto id = static_cast<ActionId>( a );
      if ( Sim::isPortAction( id ) ) {
         if ( const auto ports = chip.actionPorts( entry, id ) ) {
            face.portActions[id] = *ports;
         }
      } else if ( const auto params = chip.action( entry, id ) ) {
         face.actions[id] = *params;
      }
   }
   return face;
}

std::vector<ExpectedEntry> expectedEntries( BringupSwitch& sw, U32 unit, bool mirrorOnDrop,
                                            bool install ) {
   const UnitFacts f = unitFacts( sw, unit );
   const std::vector<U32> ids = sw.managementEntriesInOrder();
   return { portBlock( f, ids[0] ),
            portBlock( f, ids[1] ),
            stpEntry( f, ids[2], true, mirrorOnDrop, install ),
            stpEntry( f, ids[3], false, mirrorOnDrop, install ),
            vfpEntry( f, ids[4], 0x18, install ),
            vfpEntry( f, ids[5], 0x08, install ),
            vfpEntry( f, ids[6], 0x10, install ),
            vlanBlock( f, ids[7], install ),
            egressBlock( f, ids[8] ),
            egressBlock( f, ids[9] ) };
}

std::vector<std::string> expectedFpLines( BringupSwitch& sw, U32 unit, bool mirrorOnDrop,
                                          bool install ) {
   const UnitFacts f = unitFacts( sw, unit );
   const std::vector<U32> e = sw.managementEntriesInOrder();
   FpScript s( f );
   for ( int i : { 0, 1 } ) {
      s.deny( e[i], false );
      s.inPorts( e[i], f.none );
      s.noSkip( e[i] );
   }
   for ( int i : { 2, 3 } ) {
      s.stpState( e[i], i == 2 ? Sim::StpState::Block : Sim::StpState::Learn );
      s.noSkip( e[i] );
      s.inPorts( e[i], f.all );
      if ( mirrorOnDrop ) {
         s.qual( e[i], " SrcClassField 16 0x10" );
      }
      s.action( e[i], " CosQCpuNew 0" );
      s.install( e[i], install );
   }
   s.deny( e[4], true );
   s.inPorts( e[4], f.all );
   s.qual( e[4], " SrcClassField 24 0x18" );
   s.stpState( e[4], Sim::StpState::Forward );
   s.noSkip( e[4] );
   s.install( e[4], install );

   s.deny( e[5], false );
   s.inPorts( e[5], f.all );
   s.qual( e[5], " SrcClassField 8 0x8" );
   s.noSkip( e[5] );
   s.install( e[5], install );

   s.logCopy( e[6] );
   s.inPorts( e[6], f.all );
   s.qual( e[6], " SrcClassField 16 0x10" );
   s.noSkip( e[6] );
   s.install( e[6], install );

   s.deny( e[7], false );
   s.qual( e[7], " InterfaceClassL2 4 0x4" );
   s.qual( e[7], f.groupF ? " MyStationHit 1 0x1" : " L3Routable 1 0x1" );
   s.noSkip( e[7] );
   s.inPorts( e[7], f.all );
   s.install( e[7], install );

   for ( int i : { 8, 9 } ) {
      s.inPorts( e[i], f.all );
      s.action( e[i], " EgressMask " + Halyard::fpPbmpText( f.none ) );
      s.noSkip( e[i] );
   }
   return s.lines();
}

std::string faceText( const EntryFace& face ) {
   std::ostringstream os;
   for ( const auto& [q, v] : face.quals ) {
      os << Sim::qualName( q ) << "=" << v.first << "/" << v.second << " ";
   }
   if ( face.inPorts ) {
      os << "InPorts=" << face.inPorts->data.count() << "/" << face.inPorts->mask.count()
         << " ports ";
   }
   for ( const auto& [a, p] : face.actions ) {
      os << Sim::actionName( a ) << "(" << p.param1 << "," << p.param2 << ") ";
   }
   for ( const auto& [a, ports] : face.portActions ) {
      os << Sim::actionName( a ) << "[" << ports.count() << " ports] ";
   }
   return os.str();
}

}  // namespace AclBringupTest
