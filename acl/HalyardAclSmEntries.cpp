// Entry creation for every kind of rule (AclHelper::commonCreateEntry): how many entries a rule
// needs on one unit, the release of the subrule's earlier version, where each new entry comes
// from, and everything of it that does not depend on the rule's match fields (port, class or
// VLAN scope, priority, payload, actions). The caller then writes the match.
//
// Sources are tried in a fixed order: VFP (standard VFP for a standard ACL), then the VNI key,
// then the standard key, then the plain one (router variants for a VLAN ACL). The first VFP
// manager to run dry takes the rest of the ACL to IFP for good (canUseVfp false); when no VFP
// entry of the ACL is left on the unit, its interface class and its port claims go back too.
//
// A shortage is no hard failure: the unit's common record, the unit and the helper go dirty,
// the unit's error is published, and the result says `needed` with no entries. Nothing is
// rolled back here; the generic layer reapplies.
#include <vector>

#include "acl/HalyardAclHelper.h"
#include "acl/HalyardAclHelperFpText.h"
#include "acl/HalyardAclPortMasks.h"
#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclSmPortNames.h"
#include "platform/halyard/HalyardConstants.h"
#include "platform/pylon/IntfId.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/tcam/ChipLookup.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

using ManagerPtr = HalyardUnboundedTcamEntryManager::Ptr;

// The error of a rule that found no room.
// EFP has no port bitmap: an egress ACL without a class takes one entry per port, of these.
constexpr U32 portsScanned = 256;
// The link-local multicast group 224.0.0.0/24, which a router ACL must not take from L2.
constexpr U32 llmGroup = 0xE0000000;
constexpr U32 llmGroupMask = 0xFFFFFF00;
constexpr U32 classNetMask = 0xE0000000;

// The source class bit of the ACL type: a VFP entry of the type stamps it, and the type's IFP
// entries see only packets without it, so that a packet decided in VFP passes IFP by.
U32 vfpClassOf( Acl::AclType type ) {
   switch ( type ) {
      case Acl::AclType::mac:
         return 1;
      case Acl::AclType::ip:
         return 2;
      case Acl::AclType::ipv6:
         return 4;
   }
   return Fennel::aclCreateSuccess;
}

const char* stageName( Acl::AclDirection direction, bool vfp ) {
   if ( direction == Acl::out() ) {
      return "EFP";
   }
   return vfp ? "VFP" : "IFP";
}

bool prefixAbove64( Pylon::Ip6PrefixLen len ) {
   return len.value() > 64;
}

// Whether any rule of the ACL on the unit holds an entry in the VFP stage (standard or not).
bool aclHoldsVfpEntries( const AclCommonUnitData& common ) {
   for ( const auto& rule : common.aclRule() ) {
      for ( const auto& flag : rule.entryFromVfp() ) {
         if ( flag.value() ) {
            return true;
         }
      }
   }
   return false;
}

// Where the entry of one round came from.
struct EntrySource {
   ManagerPtr manager;
   U32 entry = 0;
   bool vfp = false;
   bool std = false;
   bool vni = false;
};

// One call of commonCreateEntry: the rule on one unit.
class EntryCreation {
 public:
   EntryCreation( AclHelper& helper, const AclHelper::AclDataPtr& aclData,
                  const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule, Acl::Action action,
                  bool log, U32 ruleNum, U32 subRuleNum, HalyardAclFeature feature )
       : helper_( helper ),
         aclData_( aclData ),
         unitData_( unitData ),
         common_( *unitData->common() ),
         rule_( rule ),
         action_( action ),
         log_( log ),
         ruleNum_( ruleNum ),
         subRuleNum_( subRuleNum ),
         feature_( feature ),
         sm_( helper.getHalyardAclTypeDirectionFeatureSm( aclData->aclType(), aclData->direction(),
                                                          feature ) ),
         unit_( unitData->unit() ),
         ingress_( aclData->direction() == Acl::in() ),
         racl_( !aclData->vlanId().isNone() ),
         result_( commonRuleDataFactory() ) {}

   CommonRuleData::Ptr run();

 private:
   bool ipv6PrefixesFit() const;
   bool entriesCounted();
   void llmEntryCounted();
   void portsListed();
   void earlierVersionReleased();
   bool roundDone( U32 round );
   EntrySource sourceFound();
   void vfpTried( EntrySource& src );
   void vfpRanDry();
   void recorded( const EntrySource& src );
   bool scopeProgrammed( const EntrySource& src, U32 round );
   void portScopeProgrammed( const EntrySource& src, U32 round );
   bool raclScopeProgrammed( U32 entry, U32 round );
   CommonRuleData::Ptr failed( Fennel::AclCreateError code );

   std::string name() const { return aclData_->aclName(); }

   AclHelper& helper_;
   const AclHelper::AclDataPtr& aclData_;
   const AclUnitData::Ptr& unitData_;
   AclCommonUnitData& common_;
   const Acl::RuleConfig& rule_;
   const Acl::Action action_;
   const bool log_;
   const U32 ruleNum_;
   const U32 subRuleNum_;
   const HalyardAclFeature feature_;
   const AclHelper::TypeDirectionFeatureSmPtr sm_;
   const U32 unit_;
   const bool ingress_;
   const bool racl_;
   CommonRuleData::Ptr result_;

   bool isDrop_ = false;
   U32 numEntries_ = 1;
   std::vector<U32> ports_;
   U32 dstIp_ = 0;
   U32 dstIpMask_ = 0;
   bool llmEntry_ = false;
   bool lastUseVfp_ = false;
};

CommonRuleData::Ptr EntryCreation::run() {
   VTRACE( 1, "AclHelper::commonCreateEntry( " << name() << ", ruleNum " << ruleNum_
                                               << ", subRuleNum " << subRuleNum_
                                               << " ) Unit: " << unit_ );
   VESPER_ASSERT( sm_ && "no state machine for the ACL's type, direction and feature" );
   if ( action_ != Acl::permit() && action_ != Acl::deny() ) {
      result_->vfpEntryIs( false );
      result_->neededIs( false );
      return result_;
   }
   isDrop_ = action_ == Acl::deny();
   if ( !ipv6PrefixesFit() ) {
      VTRACE( 1, "Unit: " << unit_ << " Invalid Input. IPv6 > 64" );
      return failed( Fennel::aclCreateNoEntries );
   }
   if ( !entriesCounted() ) {
      return failed( Fennel::aclCreateNoEntries );
   }
   earlierVersionReleased();
   for ( U32 round = 0; round < numEntries_; ++round ) {
      if ( !roundDone( round ) ) {
         return result_;
      }
   }
   result_->vfpEntryIs( lastUseVfp_ );
   result_->neededIs( true );
   return result_;
}

// Narrow IPv6 keys of ingress security ACLs hold the upper 64 bits of each address only.
bool EntryCreation::ipv6PrefixesFit() const {
   if ( racl_ || !ingress_ || feature_ != aclFeatureSecurity || sm_->type() != Acl::ipv6_ ||
        helper_.aclParamConfig()->ingressIpv6SecurityAclKeyWidthMode() !=
            Acl::AclKeyWidthMode::narrow ) {
      return true;
   }
   const Acl::Ip6Filter& filter = rule_.ip6Filter();
   if ( prefixAbove64( filter.source().len() ) || prefixAbove64( filter.destination().len() ) ||
        prefixAbove64( filter.sourceFullMask().prefixLen() ) ||
        prefixAbove64( filter.destinationFullMask().prefixLen() ) ) {
      return false;
   }
   common_.useIpv6HighIs( true );
   return true;
}

// Asks before anything is freed or taken, so that a rule that cannot fit leaves its earlier
// version in hardware.
bool EntryCreation::entriesCounted() {
   U32 available = 0;
   if ( ingress_ ) {
      llmEntryCounted();
      if ( numEntries_ == 1 ) {
         return true;
      }
      available = sm_->routerEntryManager()->entriesAvailable( unit_ );
   } else {
      const bool perPort = !unitData_->intfClassValid() && !racl_;
      if ( perPort ) {
         int count = 0;
         BCM_PBMP_COUNT( unitData_->portMask(), count );
         numEntries_ = static_cast<U32>( count );
      }
      const ManagerPtr& manager = racl_ ? sm_->routerEntryManager() : sm_->entryManager();
      available = manager->entriesAvailable( unit_ );
      const AclRuleData::Ptr rule = common_.aclRule( ruleNum_ );
      if ( const AclEntryList::Ptr earlier = rule ? rule->entryList( subRuleNum_ ) : nullptr ) {
         available += static_cast<U32>( earlier->entryCount() );
      }
      if ( available >= numEntries_ && perPort ) {
         portsListed();
      }
   }
   if ( available < numEntries_ ) {
      VTRACE( 1, "Unit: " << unit_ << " Requires " << numEntries_ << " entries" );
      return false;
   }
   return true;
}

// A router ACL on one VLAN whose IPv4 rule covers 224.0.0.0/24 needs a second entry that lets
// non-routed link-local multicast through.
void EntryCreation::llmEntryCounted() {
   const Fennel::AclVlanIdOrNone vlan = aclData_->vlanId();
   if ( vlan.isNone() || vlan.isShared() || aclData_->aclType() != Acl::ip_ ||
        unitData_->skipProgrammingLlmEntry() ) {
      return;
   }
   const Pylon::IpAddrWithFullMask& dst = rule_.ipFilter().destination();
   const U32 addr = dst.address().value();
   const U32 mask = dst.mask();
   if ( ( mask & llmGroupMask & addr ) != ( mask & classNetMask ) ) {
      return;
   }
   dstIpMask_ = mask | llmGroupMask;
   dstIp_ = llmGroup | ( addr & 0xFF );
   numEntries_ = 2;
}

void EntryCreation::portsListed() {
   for ( U32 port = 0; port < portsScanned; ++port ) {
      if ( BCM_PBMP_MEMBER( unitData_->portMask(), static_cast<bcm_port_t>( port ) ) ) {
         ports_.push_back( port );
      }
   }
}

void EntryCreation::earlierVersionReleased() {
   const AclRuleData::Ptr rule = common_.aclRule( ruleNum_ );
   const AclEntryList::Ptr earlier = rule ? rule->entryList( subRuleNum_ ) : nullptr;
   if ( !earlier ) {
      return;
   }
   const ManagerPtr& manager = racl_ ? sm_->routerEntryManager() : sm_->entryManager();
   for ( const auto& member : earlier->entry() ) {
      const U32 entry = member.key();
      manager->releaseEntry( unit_, entry );
      earlier->entryDel( entry );
   }
}

bool EntryCreation::roundDone( U32 round ) {
   EntrySource src = sourceFound();
   if ( !src.entry ) {
      VTRACE( 1, "Unit: " << unit_ << " failed to acquire TCAM fromVfp=" << src.vfp
                          << ",fromStd=" << src.std );
      failed( Fennel::aclCreateNoEntries );
      return false;
   }
   VTRACE( 1, "Unit: " << unit_ << " acquired " << ( src.std ? "STD-" : "REG-" )
                       << stageName( aclData_->direction(), src.vfp ) << ( src.vni ? "(+VNI)" : "" )
                       << " TCAM " << src.entry << " Group : " << src.manager->groupName() );
   recorded( src );
   if ( !scopeProgrammed( src, round ) ) {
      return false;
   }
   lastUseVfp_ = src.vfp;
   return true;
}

EntrySource EntryCreation::sourceFound() {
   EntrySource src;
   if ( sm_->vfpEntryManager() && common_.canUseVfp() ) {
      vfpTried( src );
   }
   if ( !src.entry && common_.useVni() ) {
      src = EntrySource{ sm_->vniEntryManager(), 0, false, false, true };
      src.entry = src.manager->getEntry( unit_, name() );
   }
   if ( !src.entry && !src.vni ) {
      const bool std = common_.canUseStd();
      if ( racl_ ) {
         src.manager = std ? sm_->stdRouterEntryManager() : sm_->routerEntryManager();
      } else {
         src.manager = std ? sm_->stdEntryManager() : sm_->entryManager();
      }
      src.std = std;
      src.vfp = false;
      src.entry = src.manager->getEntry( unit_, name() );
   }
   return src;
}

void EntryCreation::vfpTried( EntrySource& src ) {
   const bool racl = racl_;
   VESPER_ASSERT( !racl );
   if ( common_.canUseStd() ) {
      VTRACE( 1, "Unit: " << unit_ << " acquiring STD-VFP entry for acl " << name() );
      src.manager = sm_->stdVfpEntryManager();
      src.entry = src.manager->getEntry( unit_, name() );
      if ( !src.entry ) {
         VTRACE( 1, "Unit: " << unit_ << " ran out of STD VFP entries" );
      }
      src.vfp = src.std = src.entry != 0;
   } else {
      src.manager = sm_->vfpEntryManager();
      src.entry = src.manager->getEntry( unit_, name() );
      if ( !src.entry ) {
         VTRACE( 1, "Unit: " << unit_ << " ran out of VFP entries" );
      }
      src.vfp = src.entry != 0;
   }
   if ( !src.entry ) {
      vfpRanDry();
   }
}

// This and every later rule of the ACL go to IFP. Rules already in VFP keep the class; when
// none is left on the unit, the class and the ports' VFP claims go back.
void EntryCreation::vfpRanDry() {
   common_.canUseVfpIs( false );
   if ( aclHoldsVfpEntries( common_ ) ) {
      return;
   }
   VTRACE( 1, "Unit: " << unit_
                       << " no VFP entries installed, clearing VFP ACL type and freeing classId" );
   if ( unitData_->intfClassValid() ) {
      helper_.halyardIntfClassData( unit_ )->freeAclIntfClassPush(
          static_cast<U8>( unitData_->intfClass() ) );
   }
   unitData_->intfClassIs( intfClassInvalid );
   const VfpAclTypeForPort::Ptr claims = helper_.vfpAclTypeForUnit( unit_ );
   for ( const auto& member : unitData_->activePort() ) {
      claims->vfpAclTypeForPortDel( vfpPortName( *helper_.hcsd(), unit_, member.key() ) );
   }
}

void EntryCreation::recorded( const EntrySource& src ) {
   AclRuleData& rule = *common_.aclRule( ruleNum_ );
   rule.entryListIs( subRuleNum_ )->entryIs( src.entry );
   rule.entryFromStdIs( src.entry, src.std );
   rule.entryFromVniIs( src.entry, src.vni );
}

bool EntryCreation::scopeProgrammed( const EntrySource& src, U32 round ) {
   const U32 entry = src.entry;
   U32 vfpClass = 0;
   llmEntry_ = false;
   if ( racl_ ) {
      if ( !raclScopeProgrammed( entry, round ) ) {
         return false;
      }
   } else {
      vfpClass = vfpClassOf( aclData_->aclType() );
      portScopeProgrammed( src, round );
   }
   src.manager->setPriorityForEntry( unit_, entry, src.manager->groupPriority() );
   if ( isDrop_ ) {
      VTRACE( 1, "Setting drop action on entry, vfpClass=" << vfpClass );
   }
   if ( log_ ) {
      VTRACE( 1, "Setting log action on entry, vfpClass=" << vfpClass );
   }
   const bool payload = feature_ == aclFeatureSecurity && ingress_ &&
                        ( aclData_->aclType() == Acl::ip_ || aclData_->aclType() == Acl::mac_ );
   if ( payload ) {
      const Fennel::AclCreateError rc =
          helper_.programUdfData( unit_, src.manager, aclData_, unitData_, rule_, ruleNum_, entry );
      if ( rc != Fennel::aclCreateSuccess ) {
         VTRACE( 1, "Unit: " << unit_ << " UDF programming failed" );
         failed( rc );
         // The one failure whose result names its entry: the caller sees udfError.
         result_->entryIs( entry );
         result_->udfErrorIs( true );
         return false;
      }
   }
   const Acl::Action action = llmEntry_ ? Acl::permit() : action_;
   const bool logFlag = ( isDrop_ || llmEntry_ ) ? log_ : false;
   setActions( unit_, helper_.tcamGroupManager(), entry, action, logFlag, src.vfp,
               aclData_->direction(), vfpClass, racl_, llmEntry_ );
   result_->entryIs( entry );
   return true;
}

// A port or interface-class scope: ports by bitmap in IFP, by class in VFP and EFP, one port
// per entry in EFP without a class.
void EntryCreation::portScopeProgrammed( const EntrySource& src, U32 round ) {
   const U32 unit = unit_;
   const U32 entry = src.entry;
   const U32 vfpClass = vfpClassOf( aclData_->aclType() );
   if ( ingress_ && !src.vfp ) {
      const bcm_pbmp_t portMask = unitData_->portMask();
      SDK_CHECK_SPINDLE( bcm_field_qualify_InPorts( unit, entry, portMask, allPortsMask[unit] ) );
      Shim::fpQual( entry, " InPorts ", FpPbmp{ portMask }, " ", FpPbmp{ allPortsMask[unit] } );
      src.manager->addInPortsForEntry( unit, entry, portMask, allPortsMask[unit] );
      SDK_CHECK_SPINDLE( bcm_field_qualify_DstClassL2( unit, entry, 0, classSkipAcls_ ) );
      Shim::fpQual( entry, " DstClassL2 0", FpMask{ classSkipAcls_ } );
      if ( feature_ == aclFeatureSecurity ) {
         SDK_CHECK_SPINDLE( bcm_field_qualify_SrcClassField( unit, entry, 0, vfpClass ) );
         Shim::fpQual( entry, " SrcClassField 0", FpMask{ vfpClass } );
      }
      return;
   }
   if ( !ingress_ && !unitData_->intfClassValid() ) {
      const bcm_port_t port = static_cast<bcm_port_t>( ports_.at( round ) );
      SDK_CHECK_SPINDLE( bcm_field_qualify_OutPort( unit, entry, port, 0xFF ) );
      Shim::fpQual( entry, " OutPort ", port, FpMask{ 0xFF } );
      return;
   }
   if ( src.vfp ) {
      common_.aclRule( ruleNum_ )->entryFromVfpIs( entry, true );
   }
   const U32 intfClass = static_cast<U8>( unitData_->intfClass() );
   const U32 intfClassMask = sm_->intfClassMask();
   SDK_CHECK_SPINDLE(
       bcm_field_qualify_InterfaceClassPort( unit, entry, intfClass, intfClassMask ) );
   Shim::fpQual( entry, " InterfaceClassPort ", intfClass, FpMask{ intfClassMask } );
}

// A router ACL: its VLAN or shared id, routed traffic only, every port.
bool EntryCreation::raclScopeProgrammed( U32 entry, U32 round ) {
   const U32 unit = unit_;
   helper_.programRaclIdOrVlanId( aclData_, entry, unit );
   if ( ingress_ && numEntries_ > 1 && round == numEntries_ - 1 ) {
      SDK_CHECK_SPINDLE( bcm_field_qualify_L3Routable( unit, entry, 0, 1 ) );
      Shim::fpQual( entry, " L3Routable 0", FpMask{ 1 } );
      SDK_CHECK_SPINDLE( bcm_field_qualify_DstIp( unit, entry, dstIp_, dstIpMask_ ) );
      Shim::fpQual( entry, " DstIp ", dstIp_, FpMask{ dstIpMask_ } );
      llmEntry_ = isDrop_;
   } else if ( ingress_ && isChipGroupF( unit ) ) {
      SDK_CHECK_SPINDLE( bcm_field_qualify_MyStationHit( unit, entry, 1, 1 ) );
      Shim::fpQual( entry, " MyStationHit 1", FpMask{ 1 } );
   } else {
      SDK_CHECK_SPINDLE( bcm_field_qualify_L3Routable( unit, entry, 1, 1 ) );
      Shim::fpQual( entry, " L3Routable 1", FpMask{ 1 } );
   }
   if ( ingress_ ) {
      SDK_CHECK_SPINDLE(
          bcm_field_qualify_InPorts( unit, entry, allPortsMask[unit], allPortsMask[unit] ) );
      Shim::fpQual( entry, " InPorts ", FpPbmp{ allPortsMask[unit] }, " ",
                    FpPbmp{ allPortsMask[unit] } );
      helper_.tcamGroupManager()->tcamEntryMgr( entry )->addInPortsForEntry(
          unit, entry, allPortsMask[unit], allPortsMask[unit] );
      return true;
   }
   const auto attrs = chipAttributesForUnit( *helper_.tcamGroupManager(), unit );
   if ( attrs->hasHiGigPorts() && attrs->supportsEfpHiGigQualifier() ) {
      SDK_CHECK_SPINDLE( bcm_field_qualify_HiGig( unit, entry, 0, 1 ) );
      Shim::fpQual( entry, " HiGig 0", FpMask{ 1 } );
   }
   SDK_CHECK_SPINDLE( bcm_field_qualify_OutPort( unit, entry, 0, 0 ) );
   Shim::fpQual( entry, " OutPort 0", FpMask{ 0 } );
   return true;
}

CommonRuleData::Ptr EntryCreation::failed( Fennel::AclCreateError code ) {
   const Vesper::Name chipName =
       helper_.hcsd()->halyardModId( static_cast<U16>( unit_ ) ).chipName();
   helper_.unitDirtyIs( unit_, true );
   common_.dirtyIs( true );
   helper_.dirtyIs( true );
   helper_.publishUnitErrorIs( chipName, true );
   helper_.unitErrorIs( chipName, code );
   // A caller tells failure by `needed` with no entries; those of earlier rounds stay recorded
   // in the rule and go with the next pass.
   result_->entryDelAll();
   result_->vfpEntryIs( false );
   result_->neededIs( true );
   return result_;
}

}  // namespace

CommonRuleData::Ptr AclHelper::commonCreateEntry( const AclDataPtr& aclData,
                                                  const AclUnitData::Ptr& unitData,
                                                  const Acl::RuleConfig& rule, Acl::Action action,
                                                  bool log, Acl::UniqueId, U32 ruleNum,
                                                  U32 subRuleNum, HalyardAclFeature feature ) {
   return EntryCreation( *this, aclData, unitData, rule, action, log, ruleNum, subRuleNum, feature )
       .run();
}

S32 AclHelper::rulePriority( const AclDataPtrConst& aclData, U32 ruleNum, U32 ) const {
   VESPER_ASSERT( ruleNum < ( 1 << ruleNumBits ) );
   const U32 lowest = ( 1u << ruleNumBits ) - 1;
   const U32 value =
       ( ( aclData->aclPriority() << ruleNumBits ) | ( lowest - ruleNum ) ) + 0x80000000u;
   return static_cast<S32>( value );
}

}  // namespace Halyard
