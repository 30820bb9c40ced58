#include "platform/acl/RuleConfig.h"

#include "platform/vesper/Assert.h"

namespace Acl {

const std::string& RuleAttributes::remark() const {
   static const std::string none;
   return remark_ ? *remark_ : none;
}

RuleConfig::RuleConfig( const IpRuleConfig& rule )
    : RuleAttributes( rule ), filter_( rule.filter() ) {}

RuleConfig::RuleConfig( const Ip6RuleConfig& rule )
    : RuleAttributes( rule ), filter_( rule.filter() ) {}

RuleConfig::RuleConfig( const MacRuleConfig& rule )
    : RuleAttributes( rule ), filter_( rule.filter() ) {}

AclType RuleConfig::aclType() const {
   return static_cast<AclType>( filter_.index() );
}

const IpFilter& RuleConfig::ipFilter() const {
   VESPER_ASSERT( aclType() == Acl::ip() );
   return std::get<IpFilter>( filter_ );
}

const Ip6Filter& RuleConfig::ip6Filter() const {
   VESPER_ASSERT( aclType() == Acl::ipv6() );
   return std::get<Ip6Filter>( filter_ );
}

const MacFilter& RuleConfig::macFilter() const {
   VESPER_ASSERT( aclType() == Acl::mac() );
   return std::get<MacFilter>( filter_ );
}

}  // namespace Acl
