// A back-end that records every operation the generic layer calls, with its arguments, one
// line each, and answers as a test tells it: the order and the arguments of the calls are what
// the real back-end depends on.
#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/fennel/FennelAclHelper.h"
#include "platform/vesper/Ptr.h"

namespace FennelTest {

// The port terms of one createIpAclSubrule call, as the back-end receives them.
struct SubruleCall {
   U32 ruleNum = 0;
   U32 subrule = 0;
   U16 srcPort = 0, srcPortMask = 0, dstPort = 0, dstPortMask = 0;
   U16 srcLow = 0, srcHigh = 0, dstLow = 0, dstHigh = 0;
   U16 ipLen = 0, ipLenMask = 0, ipLenLow = 0, ipLenHigh = 0;
   U8 tcpFlags = 0;
   bool l4Rule = false;
   Acl::RuleConfig rule;

   bool srcRange() const { return srcPortMask == 0 && srcLow != srcHigh; }
   bool dstRange() const { return dstPortMask == 0 && dstLow != dstHigh; }
};

class RecordingBackEnd : public FennelHelper::AclHelper {
 public:
   static Vesper::Ptr<RecordingBackEnd> create() {
      Vesper::Ptr<RecordingBackEnd> helper( new RecordingBackEnd );
      helper->hasNotificationActiveIs( true );
      return helper;
   }

   // The calls so far, then forgets them.
   std::vector<std::string> take() { return std::exchange( calls, {} ); }

   std::vector<std::string> calls;
   std::vector<SubruleCall> subrules;
   // Answers; the defaults are a back-end with room for everything.
   std::function<Fennel::AclCreateError( const SubruleCall& )> subruleResult;
   Fennel::AclCreateError macResult = Fennel::aclCreateSuccess;
   bool addAnswer = false;
   bool neighborDiscovery = false;

   // Bring-up publishes what the back-end serves: everything, here.
   void hwInit() override {
      log( "hwInit" );
      for ( const auto& name : FennelHelper::aclCapabilityNames ) {
         capabilityIs( name.value, true );
      }
   }
   bool addIntfToAcl( const Fennel::IntfPairKey& intf, const AclDataPtr& acl,
                      const AclDataStatusPtr& ) override {
      log( "addIntfToAcl ", name( acl ), " ", intf.intfId() );
      return addAnswer;
   }
   bool removeIntfFromAcl( const Fennel::IntfPairKey& intf, const AclDataPtr& acl,
                           bool belongsToAnother ) override {
      log( "removeIntfFromAcl ", name( acl ), " ", intf.intfId(),
           belongsToAnother ? " belongsToAnother" : "" );
      return false;
   }
   void updateAclPorts( const AclDataPtr& acl, bool active ) override {
      log( "updateAclPorts ", name( acl ), active ? " active" : " inactive" );
   }
   Fennel::AclCreateError precreateAcl( const AclDataPtr& acl, const AclDataStatusPtr& ) override {
      log( "precreateAcl ", name( acl ) );
      return Fennel::aclCreateSuccess;
   }
   Fennel::AclCreateError createMacAclRule( const Acl::RuleConfig& rule, Acl::UniqueId,
                                            const AclDataPtr& acl, U32 ruleNum ) override {
      log( "createMacAclRule ", name( acl ), " ", ruleNum, " seq ", rule.seqNo() );
      return macResult;
   }
   Fennel::AclCreateError createIpAclSubrule( Acl::AclType, const Acl::RuleConfig& rule,
                                              Acl::UniqueId, const AclDataPtr& acl, U32 ruleNum,
                                              U32 subrule, U16 sp, U16 spm, U16 dp, U16 dpm, U16 sl,
                                              U16 sh, U16 dl, U16 dh, U16 len, U16 lenm, U16 ll,
                                              U16 lh, U8 flags, bool l4Rule, U8, U8 ) override {
      SubruleCall c{ ruleNum, subrule, sp,   spm, dp, dpm,   sl,     sh,  dl,
                     dh,      len,     lenm, ll,  lh, flags, l4Rule, rule };
      subrules.push_back( c );
      log( "createIpAclSubrule ", name( acl ), " ", ruleNum, ".", subrule );
      return subruleResult ? subruleResult( c ) : Fennel::aclCreateSuccess;
   }
   Fennel::AclCreateError createIpFragRule( const AclDataPtr& acl, const Acl::RuleConfig&,
                                            Acl::UniqueId, U32 ruleNum, U32 subrule ) override {
      log( "createIpFragRule ", name( acl ), " ", ruleNum, ".", subrule );
      return Fennel::aclCreateSuccess;
   }
   Fennel::AclCreateError createFinalAclRule( Acl::AclType, const AclDataPtr& acl,
                                              U32 ruleNum ) override {
      log( "createFinalAclRule ", name( acl ), " ", ruleNum );
      return Fennel::aclCreateSuccess;
   }
   bool needToInstallIcmp6NeighborDiscoveryRules() override {
      log( "needToInstallIcmp6NeighborDiscoveryRules" );
      return neighborDiscovery;
   }
   void prepareToCommit() override { log( "prepareToCommit" ); }
   void commitAcl( const AclDataPtr& acl ) override { log( "commitAcl ", name( acl ) ); }
   void destroyAcl( const AclDataPtr& acl ) override { log( "destroyAcl ", name( acl ) ); }
   void cleanupAcl( const AclDataPtr& acl ) override { log( "cleanupAcl ", name( acl ) ); }
   void blockIntf( Pylon::IntfId intf, bool block, U32 ) override {
      log( "blockIntf ", intf, block ? " block" : " unblock" );
   }

 private:
   RecordingBackEnd() = default;

   static std::string name( const AclDataPtr& acl ) { return acl->aclName(); }
   template <class... Parts>
   void log( const Parts&... parts ) {
      std::ostringstream line;
      ( line << ... << parts );
      calls.push_back( line.str() );
   }
};

}  // namespace FennelTest
