#include "platform/acl/AclConfig.h"

#include "platform/vesper/Assert.h"

namespace Acl {

void AclConfig::standardIs( bool standard ) {
   if ( standard == standard_ ) {
      return;
   }
   standard_ = standard;
   notify( &NotifieeConst::onStandard );
}

const RuleConfig* AclConfig::rule( U32 seqNo ) const {
   const auto it = rule_.find( seqNo );
   return it == rule_.end() ? nullptr : &it->second;
}

void AclConfig::ruleIs( U32 seqNo, RuleConfig rule ) {
   VESPER_ASSERT( rule.aclType() == type() );
   rule.seqNoIs( seqNo );
   const auto [it, inserted] = rule_.try_emplace( seqNo, rule );
   if ( !inserted ) {
      if ( it->second == rule ) {
         return;
      }
      it->second = std::move( rule );
   }
   notify( &NotifieeConst::onRule, seqNo );
}

void AclConfig::ruleDel( U32 seqNo ) {
   if ( rule_.erase( seqNo ) ) {
      notify( &NotifieeConst::onRule, seqNo );
   }
}

void AclConfig::ruleDelAll() {
   while ( !rule_.empty() ) {
      ruleDel( rule_.begin()->first );
   }
}

AclConfig::Ptr aclConfigFactory( Vesper::Name name, AclType type ) {
   AclConfig::Ptr list( new AclConfig( std::move( name ), type ) );
   list->hasNotificationActiveIs( true );
   return list;
}

size_t Config::listIndex( AclType type ) {
   const auto index = static_cast<size_t>( type );
   VESPER_ASSERT( index < std::tuple_size_v<decltype( aclConfig_ )> );
   return index;
}

const Config::AclConfigMap& Config::aclConfig( AclType type ) const {
   return aclConfig_[listIndex( type )];
}

AclConfig::Ptr Config::aclConfig( AclType type, const Vesper::Name& name ) const {
   return aclConfig( type ).find( name );
}

bool Config::aclConfigHas( AclType type, const Vesper::Name& name ) const {
   return aclConfig( type ).has( name );
}

AclConfig::Ptr Config::aclConfigIs( AclType type, const Vesper::Name& name ) {
   auto [list, created] = aclConfig_[listIndex( type )].findOrCreate( name, type );
   if ( created ) {
      notify( &NotifieeConst::onAclConfig, type, name );
   }
   return list;
}

AclConfig::Ptr Config::aclConfigDel( AclType type, const Vesper::Name& name ) {
   AclConfig::Ptr removed = aclConfig_[listIndex( type )].del( name );
   if ( removed ) {
      notify( &NotifieeConst::onAclConfig, type, name );
   }
   return removed;
}

void Config::aclConfigDelAll() {
   for ( const AclType type : { AclType::ip, AclType::ipv6, AclType::mac } ) {
      aclConfig_[listIndex( type )].delAll(
          [this, type]( const Vesper::Name& name, const AclConfig::Ptr& ) {
             notify( &NotifieeConst::onAclConfig, type, name );
          } );
   }
}

Config::Ptr configFactory() {
   Config::Ptr config( new Config );
   config->hasNotificationActiveIs( true );
   return config;
}

}  // namespace Acl
