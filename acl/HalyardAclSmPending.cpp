// The operations of AclHelper whose behaviour is not written yet: blocking, router ACL scope,
// shared router ACLs (their bindings included), verification and show tables. Each stops the
// process, naming itself, rather than answer as if it had done its work.
#include "acl/HalyardAclSm.h"
#include "platform/vesper/Assert.h"

namespace Halyard {

namespace {

[[noreturn]] void notAvailableYet( const char* text, unsigned line, const char* function ) {
   Vesper::assertionFailed( text, __FILE__, line, function );
}

}  // namespace

// The assertion's expression reads "AclHelper::<operation> is not available yet".
#define HALYARD_ACL_NOT_AVAILABLE_YET( operation ) \
   notAvailableYet( "AclHelper::" operation " is not available yet", __LINE__, __PRETTY_FUNCTION__ )

using AclDataPtr = AclHelper::AclDataPtr;
using AclDataPtrConst = AclHelper::AclDataPtrConst;

// ---- Blocking.

void AclHelper::blockIntf( Pylon::IntfId, bool, U32 ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "blockIntf" );
}

// ---- Rules.

void AclHelper::programRaclIdOrVlanId( const AclDataPtr&, U32, U32 ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "programRaclIdOrVlanId" );
}

// ---- Shared router ACLs.

bool AclHelper::sharedAclDataForVlansSupported( const Fennel::AclKey& ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "sharedAclDataForVlansSupported" );
}

bool AclHelper::addIntfToSharedAcl( Pylon::IntfId, const AclDataPtr& ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "addIntfToSharedAcl" );
}

bool AclHelper::removeIntfFromSharedAcl( Pylon::IntfId, const AclDataPtr&, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "removeIntfFromSharedAcl" );
}

void AclHelper::removeIntfClassIdForVlan( Pylon::IntfId, const AclDataPtr& ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "removeIntfClassIdForVlan" );
}

// ---- Rules as they stand, and verification against the hardware.

bool AclHelper::macRuleExists( const AclDataPtrConst&, Acl::UniqueId, U32 ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "macRuleExists" );
}

bool AclHelper::ipSubruleExists( const AclDataPtrConst&, Acl::UniqueId, U32, U32 ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "ipSubruleExists" );
}

void AclHelper::verifyMacRuleGeneral( const AclDataPtrConst&, Acl::UniqueId, U32, U32 ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyMacRuleGeneral" );
}

void AclHelper::verifyMacRuleAction( const AclDataPtrConst&, Acl::UniqueId, U32, U32, Acl::Action,
                                     bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyMacRuleAction" );
}

void AclHelper::verifyMacRuleSrcMac( const AclDataPtrConst&, Acl::UniqueId, U32, U32,
                                     const Pylon::EthAddr&, const Pylon::EthAddr&, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyMacRuleSrcMac" );
}

void AclHelper::verifyMacRuleDstMac( const AclDataPtrConst&, Acl::UniqueId, U32, U32,
                                     const Pylon::EthAddr&, const Pylon::EthAddr&, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyMacRuleDstMac" );
}

void AclHelper::verifyMacRuleEtherType( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U16,
                                        bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyMacRuleEtherType" );
}

void AclHelper::verifyIpRuleGeneral( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32 ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleGeneral" );
}

void AclHelper::verifyIpRuleAction( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                    Acl::Action, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleAction" );
}

void AclHelper::verifyIpRuleIpProto( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8,
                                     bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleIpProto" );
}

void AclHelper::verifyIpRuleSrcIp( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U32, U32,
                                   bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleSrcIp" );
}

void AclHelper::verifyIpRuleDstIp( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U32, U32,
                                   bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleDstIp" );
}

void AclHelper::verifyIpRuleSrcIp6( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                    const Pylon::Ip6AddrWithMask&, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleSrcIp6" );
}

void AclHelper::verifyIpRuleSrcIp6FullMask( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                            const Pylon::Ip6AddrWithFullMask&, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleSrcIp6FullMask" );
}

void AclHelper::verifyIpRuleDstIp6( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                    const Pylon::Ip6AddrWithMask&, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleDstIp6" );
}

void AclHelper::verifyIpRuleDstIp6FullMask( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                            const Pylon::Ip6AddrWithFullMask&, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleDstIp6FullMask" );
}

void AclHelper::verifyIpRuleDscp( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleDscp" );
}

void AclHelper::verifyIpRuleTcIp6( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8,
                                   bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleTcIp6" );
}

void AclHelper::verifyIpRuleFragments( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, bool,
                                       bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleFragments" );
}

void AclHelper::verifyIpRuleTcpFlags( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8,
                                      bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleTcpFlags" );
}

void AclHelper::verifyIpRuleIcmp( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8, U8,
                                  bool, bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleIcmp" );
}

void AclHelper::verifyIpRuleSrcPort( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U16, U16,
                                     bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleSrcPort" );
}

void AclHelper::verifyIpRuleDstPort( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U16, U16,
                                     bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleDstPort" );
}

void AclHelper::verifyIpRuleIpLen( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U16, U16,
                                   bool ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyIpRuleIpLen" );
}

void AclHelper::verifyAclGeneral( const AclDataPtrConst& ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyAclGeneral" );
}

void AclHelper::verifyDropAllRule( const AclDataPtrConst&, U32 ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "verifyDropAllRule" );
}

// ---- Show tables.

void AclHelper::showAclTypeHeader( U32, U32, Acl::AclType ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "showAclTypeHeader" );
}

void AclHelper::showAclHeader( U32, U32, bool, const AclDataPtrConst& ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "showAclHeader" );
}

void AclHelper::showMacAclRule( U32, U32, const AclDataPtrConst&, U32, Acl::UniqueId ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "showMacAclRule" );
}

void AclHelper::showIpAclRule( U32, U32, const AclDataPtrConst&, U32, Acl::UniqueId ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "showIpAclRule" );
}

void AclHelper::showDropEntry( U32, U32, const AclDataPtrConst& ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "showDropEntry" );
}

void AclHelper::showSharedRaclData( U32, U32 ) {
   HALYARD_ACL_NOT_AVAILABLE_YET( "showSharedRaclData" );
}

}  // namespace Halyard
