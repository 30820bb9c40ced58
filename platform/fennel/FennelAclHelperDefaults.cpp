// What FennelHelper::AclHelper does for the virtual operations that a
// back-end does not override: neutral answers where the generic layer can
// live without the back-end, refusals for features it does not serve, and a
// stop with an assertion naming the operation where only the hardware can
// answer.
#include <sstream>

#include "platform/acl/IpFilter.h"
#include "platform/fennel/FennelAclHelper.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "FennelHelper::AclHelper" )

// An operation that only a back-end can serve was called on the base: the
// back-end failed to override it. Stops the process, naming the operation.
#define FENNEL_BACK_END_ONLY()                                                            \
   ::Vesper::assertionFailed( "!\"served by the ACL back-end, not by its generic base\"", \
                              __FILE__, __LINE__, __PRETTY_FUNCTION__ )

namespace FennelHelper {

namespace {

// A refused feature answers "not served" and leaves a trace line, so that a
// configuration that needs it can be told from one that failed.
bool refused( const char* operation ) {
   VTRACE( 1, "FennelHelper::AclHelper::" << operation << ": not served by this back-end" );
   return false;
}

}  // namespace

U8 AclHelper::supportedTcpFlagsDefault() const {
   return Acl::tcpFlagFin | Acl::tcpFlagSyn | Acl::tcpFlagRst | Acl::tcpFlagPsh | Acl::tcpFlagAck |
          Acl::tcpFlagUrg;
}

void AclHelper::hwInit() {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyHwInit() {}

Fennel::AclKey AclHelper::aclOwner( Pylon::IntfId, const Fennel::AclKey& aclKey ) const {
   return aclKey;
}

std::string AclHelper::aclGroup( Pylon::IntfId, Acl::AclDirection ) const {
   return std::string( Fennel::AclKey::aclGroupDefault );
}

bool AclHelper::intfSupportsAcl( Pylon::IntfId ) const {
   return true;
}

Vesper::Name AclHelper::intfLinecardName( Pylon::IntfId ) const {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::logAclUnsupportedHardware( const Vesper::Name& aclName, Pylon::IntfId intfId ) {
   VTRACE( 0, "ACL " << aclName << " is not supported by the hardware of " << intfId );
}

Fennel::AclCreateError AclHelper::createIpAclSubrule( Acl::AclType, const Acl::RuleConfig&,
                                                      Acl::UniqueId, const AclDataPtr&, U32, U32,
                                                      U16, U16, U16, U16, U16, U16, U16, U16, U16,
                                                      U16, U16, U16, U8, bool, U8, U8 ) {
   FENNEL_BACK_END_ONLY();
}

Fennel::AclCreateError AclHelper::createIpFragRule( const AclDataPtr&, const Acl::RuleConfig&,
                                                    Acl::UniqueId, U32, U32 ) {
   FENNEL_BACK_END_ONLY();
}

Fennel::AclCreateError AclHelper::createMacAclRule( const Acl::RuleConfig&, Acl::UniqueId,
                                                    const AclDataPtr&, U32 ) {
   FENNEL_BACK_END_ONLY();
}

Fennel::AclCreateError AclHelper::createFinalAclRule( Acl::AclType, const AclDataPtr&, U32 ) {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::needToInstallIcmp6NeighborDiscoveryRules() {
   FENNEL_BACK_END_ONLY();
}

Fennel::AclCreateError AclHelper::precreateAcl( const AclDataPtr&, const AclDataStatusPtr& ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::destroyAcl( const AclDataPtr& ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::removeAcl( const AclDataPtr& ) {}

void AclHelper::cleanupAcl( const AclDataPtr& ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::prepareToCommit() {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::commitAcl( const AclDataPtr& ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::batchCommitAcls() {}

void AclHelper::blockIntf( Pylon::IntfId, bool, U32 ) {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::sharedAclDataForVlansSupported( const Fennel::AclKey& ) {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::routedPortAclSharingSupported( const Fennel::AclKey& ) {
   return false;
}

bool AclHelper::subIntfAclSharingSupported( const Fennel::AclKey& ) {
   return false;
}

bool AclHelper::useUnsharedRaclsForSubIntf() {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::isVfiForwarding() {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::addIntfToAcl( const Fennel::IntfPairKey&, const AclDataPtr&,
                              const AclDataStatusPtr& ) {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::removeIntfFromAcl( const Fennel::IntfPairKey&, const AclDataPtr&, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::updateAclPorts( const AclDataPtr&, bool ) {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::createAclsWithExtActions() {
   return refused( "createAclsWithExtActions" );
}

bool AclHelper::addAclWithExtActions( const AclDataPtr&, const Acl::RuleConfig&, Acl::UniqueId,
                                      U32 ) {
   return refused( "addAclWithExtActions" );
}

bool AclHelper::createMirrorDestinationAcl( const AclDataPtr& ) {
   return refused( "createMirrorDestinationAcl" );
}

bool AclHelper::removeMirrorDestinationAcl( const AclDataPtr& ) {
   return refused( "removeMirrorDestinationAcl" );
}

bool AclHelper::deleteAclRuleWithExtActions( const AclDataPtr&, Acl::UniqueId, U32 ) {
   return refused( "deleteAclRuleWithExtActions" );
}

bool AclHelper::commitAclWithExtActions( const AclDataPtr& ) {
   return refused( "commitAclWithExtActions" );
}

bool AclHelper::deleteAcl( const AclDataPtr& ) {
   return refused( "deleteAcl" );
}

bool AclHelper::deleteAclRule( const AclDataPtr&, Acl::UniqueId, U32 ) {
   return refused( "deleteAclRule" );
}

void AclHelper::handleHalyardIntfToPort( Pylon::IntfId ) {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::macRuleExists( const AclDataPtrConst&, Acl::UniqueId, U32 ) {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::ipSubruleExists( const AclDataPtrConst&, Acl::UniqueId, U32, U32 ) {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::ipPortRangeSubruleExists( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U16, U16,
                                          bool, U16, U16, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyMacRuleGeneral( const AclDataPtrConst&, Acl::UniqueId, U32, U32 ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyMacRuleAction( const AclDataPtrConst&, Acl::UniqueId, U32, U32, Acl::Action,
                                     bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyMacRuleSrcMac( const AclDataPtrConst&, Acl::UniqueId, U32, U32,
                                     const Pylon::EthAddr&, const Pylon::EthAddr&, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyMacRuleDstMac( const AclDataPtrConst&, Acl::UniqueId, U32, U32,
                                     const Pylon::EthAddr&, const Pylon::EthAddr&, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyMacRuleEtherType( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U16,
                                        bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleGeneral( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32 ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleAction( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                    Acl::Action, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleIpProto( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8,
                                     bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleSrcIp( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U32, U32,
                                   bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleDstIp( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U32, U32,
                                   bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleSrcIp6( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                    const Pylon::Ip6AddrWithMask&, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleSrcIp6FullMask( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                            const Pylon::Ip6AddrWithFullMask&, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleDstIp6( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                    const Pylon::Ip6AddrWithMask&, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleDstIp6FullMask( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32,
                                            const Pylon::Ip6AddrWithFullMask&, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleDscp( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleTcIp6( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8,
                                   bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleFragments( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, bool,
                                       bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleTcpFlags( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8,
                                      bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleIcmp( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U8, U8,
                                  bool, bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleSrcPort( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U16, U16,
                                     bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleDstPort( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U16, U16,
                                     bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpRuleIpLen( const AclDataPtrConst&, Acl::UniqueId, U32, U32, U32, U16, U16,
                                   bool ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyAclGeneral( const AclDataPtrConst& ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyDropAllRule( const AclDataPtrConst&, U32 ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::verifyIpDIRule( const AclDataPtrConst&, Acl::UniqueId, U32, U32 ) {}

void AclHelper::verifyMacDIRule( const AclDataPtrConst&, Acl::UniqueId, U32, U32 ) {}

void AclHelper::showAclTypeHeader( U32, U32, Acl::AclType ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::showAclHeader( U32, U32, bool, const AclDataPtrConst& ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::showMacAclRule( U32, U32, const AclDataPtrConst&, U32, Acl::UniqueId ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::showIpAclRule( U32, U32, const AclDataPtrConst&, U32, Acl::UniqueId ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::showDropEntry( U32, U32, const AclDataPtrConst& ) {
   FENNEL_BACK_END_ONLY();
}

void AclHelper::showSharedRaclData( U32, U32 ) {
   FENNEL_BACK_END_ONLY();
}

bool AclHelper::aclCountersAllocated( const AclDataPtrConst& ) {
   FENNEL_BACK_END_ONLY();
}

U64 AclHelper::aclRuleCountersSinceLastPoll( const AclDataPtrConst&, U32, Acl::UniqueId ) {
   FENNEL_BACK_END_ONLY();
}

std::optional<U64> AclHelper::aclRuleCounterPerChipSinceLastPoll( const AclDataPtrConst&, U32,
                                                                  Acl::UniqueId, U32 ) {
   return std::nullopt;
}

bool AclHelper::doConfigureTapAggMode( bool ) {
   return refused( "doConfigureTapAggMode" );
}

bool AclHelper::handleDeepInspSkipL2( bool ) {
   return refused( "handleDeepInspSkipL2" );
}

bool AclHelper::handleDeepInspSkipL4( bool ) {
   return refused( "handleDeepInspSkipL4" );
}

void AclHelper::verifyDeepInspSkipL2() {}

void AclHelper::verifyDeepInspSkipL4() {}

bool AclHelper::subIntfAclAsPacl() const {
   return false;
}

}  // namespace FennelHelper
