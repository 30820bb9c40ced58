// The configuration of ACLs: one access list (AclConfig) and the tree of all
// of them (Config), as the generic ACL layer and the back-end read it.
//
// AclConfig: one access list, known by its name and type, which never change.
//   standard   the list was configured as a standard list (source terms only)
//   rule       sequence number -> RuleConfig, walked in rising sequence number,
//              which is the order in which a packet meets the rules
// Config: the lists, by type and by name. The same name may stand once for each
// type: "ip access-list a" and "mac access-list a" are two lists.
//   aclConfig  (type, name) -> AclConfig, made by aclConfigIs( type, name ),
//              which returns the list standing
//
// Invariants:
//  1. A stored rule's sequence number is its key, and its type is the list's:
//     ruleIs() writes the key into the rule, and a rule of another type is a
//     programming error that stops the process.
//  2. Each setter tells the notifiees once per real change: a new member, a
//     changed value, a removed member. Setting the value that stands is silent.
//
// A rule's unique id is the loader's to give, with the top bit clear (see
// Acl::UniqueId); it is stored as given.
//
// Threads: activity thread.
#pragma once

#include <array>
#include <map>
#include <utility>

#include "platform/acl/AclTypes.h"
#include "platform/acl/RuleConfig.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/OwnedCollection.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace Acl {

class AclConfig : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Acl::AclConfig" )

 public:
   using Ptr = Vesper::Ptr<AclConfig>;
   using PtrConst = Vesper::Ptr<const AclConfig>;
   using RuleMap = std::map<U32, RuleConfig>;

   class NotifieeConst : public Vesper::NotifieeBase<AclConfig> {
    public:
      virtual void onStandard() {}
      virtual void onRule( U32 /*seqNo*/ ) {}
   };

   // Made by Config::aclConfigIs(), or alone for a list outside any tree.
   AclConfig( Vesper::Name name, AclType type ) : name_( std::move( name ) ), type_( type ) {}

   const Vesper::Name& name() const { return name_; }
   AclType type() const { return type_; }

   bool standard() const { return standard_; }
   void standardIs( bool standard );

   // The rule with this sequence number, or null.
   const RuleConfig* rule( U32 seqNo ) const;
   const RuleMap& rule() const { return rule_; }
   bool ruleHas( U32 seqNo ) const { return rule_.contains( seqNo ); }
   size_t ruleCount() const { return rule_.size(); }
   // REQUIRES: rule.aclType() == type().
   void ruleIs( U32 seqNo, RuleConfig rule );
   void ruleDel( U32 seqNo );
   // Removes the rules in rising sequence number, telling of each.
   void ruleDelAll();

 private:
   Vesper::Name name_;
   AclType type_;
   bool standard_ = false;
   RuleMap rule_;
};

// A new, empty list with notifications on.
AclConfig::Ptr aclConfigFactory( Vesper::Name name, AclType type );

class Config : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Acl::Config" )

 public:
   using Ptr = Vesper::Ptr<Config>;
   using PtrConst = Vesper::Ptr<const Config>;
   using AclConfigMap = Vesper::OwnedCollection<Vesper::Name, AclConfig>;

   class NotifieeConst : public Vesper::NotifieeBase<Config> {
    public:
      virtual void onAclConfig( AclType, const Vesper::Name& /*name*/ ) {}
   };

   // The list of this type and name, or null.
   AclConfig::Ptr aclConfig( AclType type, const Vesper::Name& name ) const;
   // The lists of one type, by name.
   const AclConfigMap& aclConfig( AclType type ) const;
   bool aclConfigHas( AclType type, const Vesper::Name& name ) const;
   // Finds or makes the list; a new list tells the notifiees.
   AclConfig::Ptr aclConfigIs( AclType type, const Vesper::Name& name );
   AclConfig::Ptr aclConfigDel( AclType type, const Vesper::Name& name );
   // Removes every list, type by type (IPv4, IPv6, MAC), each in walk order.
   void aclConfigDelAll();

 private:
   friend Ptr configFactory();
   Config() = default;
   // REQUIRES: `type` is one of the three ACL types.
   static size_t listIndex( AclType type );

   // Indexed by AclType: IPv4, IPv6, MAC.
   std::array<AclConfigMap, 3> aclConfig_;
};

// A new, empty tree with notifications on.
Config::Ptr configFactory();

}  // namespace Acl
