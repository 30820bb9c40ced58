// The configuration of one rule (one line of an access list).
//
// RuleAttributes is what every rule carries besides its match: action, log
// flag, sequence number, unique id, and, for a remark line, the remark.
// IpRuleConfig, Ip6RuleConfig and MacRuleConfig pair them with the filter of
// one ACL type. RuleConfig holds any one of the three, and hands out the
// typed view that the code of that ACL type reads.
//
// Asking a RuleConfig for the filter of another type is a programming error
// and stops the process (the assertion names the expected type).
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "platform/acl/AclTypes.h"
#include "platform/acl/IpFilter.h"
#include "platform/acl/MacFilter.h"
#include "platform/acl/UniqueId.h"
#include "platform/vesper/Types.h"

namespace Acl {

class RuleAttributes {
 public:
   Action action() const { return action_; }
   void actionIs( Action action ) { action_ = action; }
   bool log() const { return log_; }
   void logIs( bool log ) { log_ = log; }
   // The rule's number in its access list, as configured.
   U32 seqNo() const { return seqNo_; }
   void seqNoIs( U32 seqNo ) { seqNo_ = seqNo; }
   UniqueId uniqueId() const { return uniqueId_; }
   void uniqueIdIs( UniqueId id ) { uniqueId_ = id; }

   // A remark line matches nothing and programs nothing; it carries text.
   bool isRemark() const { return remark_.has_value(); }
   const std::string& remark() const;
   void remarkIs( std::string text ) { remark_ = std::move( text ); }

   friend bool operator==( const RuleAttributes&, const RuleAttributes& ) = default;

 private:
   Action action_ = Action::permit;
   bool log_ = false;
   U32 seqNo_ = 0;
   UniqueId uniqueId_;
   std::optional<std::string> remark_;
};

template <typename Filter>
class FilteredRuleConfig : public RuleAttributes {
 public:
   FilteredRuleConfig() = default;
   explicit FilteredRuleConfig( const Filter& filter ) : filter_( filter ) {}
   FilteredRuleConfig( const RuleAttributes& attributes, const Filter& filter )
       : RuleAttributes( attributes ), filter_( filter ) {}

   const Filter& filter() const { return filter_; }
   void filterIs( const Filter& filter ) { filter_ = filter; }

   friend bool operator==( const FilteredRuleConfig&, const FilteredRuleConfig& ) = default;

 private:
   Filter filter_;
};

class IpRuleConfig : public FilteredRuleConfig<IpFilter> {
   using FilteredRuleConfig::FilteredRuleConfig;
};
class Ip6RuleConfig : public FilteredRuleConfig<Ip6Filter> {
   using FilteredRuleConfig::FilteredRuleConfig;
};
class MacRuleConfig : public FilteredRuleConfig<MacFilter> {
   using FilteredRuleConfig::FilteredRuleConfig;
};

class RuleConfig : public RuleAttributes {
 public:
   // An IPv4 rule that matches every IPv4 packet.
   RuleConfig() = default;
   RuleConfig( const IpRuleConfig& rule );
   RuleConfig( const Ip6RuleConfig& rule );
   RuleConfig( const MacRuleConfig& rule );

   AclType aclType() const;

   // REQUIRES: aclType() is the type of the filter asked for.
   const IpFilter& ipFilter() const;
   const Ip6Filter& ip6Filter() const;
   const MacFilter& macFilter() const;
   IpRuleConfig ipRuleConfig() const { return IpRuleConfig( *this, ipFilter() ); }
   Ip6RuleConfig ip6RuleConfig() const { return Ip6RuleConfig( *this, ip6Filter() ); }
   MacRuleConfig macRuleConfig() const { return MacRuleConfig( *this, macFilter() ); }

   friend bool operator==( const RuleConfig&, const RuleConfig& ) = default;

 private:
   // Indices follow AclType: 0 IPv4, 1 IPv6, 2 MAC.
   std::variant<IpFilter, Ip6Filter, MacFilter> filter_;
};

}  // namespace Acl
