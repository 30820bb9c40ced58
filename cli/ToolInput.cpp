#include "cli/ToolInput.h"

#include "platform/vesper/Exception.h"
#include "sim/switch/ProfileText.h"

namespace HalyardCli {

namespace {

std::function<bool( Pylon::IntfId )> interfacesOf( const Sim::SwitchProfile& profile ) {
   return [&profile]( Pylon::IntfId intf ) { return profile.intfHas( intf ); };
}

// An interface given on the command line; nullopt for none, and an error written for a bad one.
bool optionInterface( const std::string& option, const std::string& name,
                      const Sim::SwitchProfile& profile, std::optional<Pylon::IntfId>& intf,
                      std::ostream& err ) {
   if ( name.empty() ) {
      return true;
   }
   try {
      intf = Pylon::strepToValue<Pylon::IntfId>( name );
   } catch ( const Vesper::Exception& ) {
      err << "halyard-acl: " << option << " " << name
          << ": expected an interface name such as Ethernet1\n";
      return false;
   }
   if ( intf->isNull() || !profile.intfHas( *intf ) ) {
      err << "halyard-acl: " << option << " " << name << ": expected an interface of the switch\n";
      return false;
   }
   return true;
}

}  // namespace

Sim::SwitchProfile loadProfile( const std::string& path ) {
   return path.empty() ? Sim::defaultProfile() : Sim::readProfileFile( path );
}

std::optional<std::vector<AclSetup> > readConfigs( const std::vector<std::string>& paths,
                                                   const Sim::SwitchProfile& profile,
                                                   std::ostream& err ) {
   ConfigOptions options;
   options.interfaceExists = interfacesOf( profile );
   std::vector<AclSetup> setups;
   bool ok = true;
   for ( const std::string& path : paths ) {
      try {
         setups.push_back( readConfigFile( path, options ) );
      } catch ( const ConfigError& e ) {
         for ( const ConfigDiagnostic& d : e.diagnostics() ) {
            err << d.text() << "\n";
         }
         ok = false;
      }
   }
   return ok ? std::optional( std::move( setups ) ) : std::nullopt;
}

std::optional<std::vector<Fennel::Packet> > readPacketsFor( const std::string& path,
                                                            const CommandArgs& args,
                                                            const Sim::SwitchProfile& profile,
                                                            std::ostream& err ) {
   PacketDefaults defaults;
   defaults.interfaceExists = interfacesOf( profile );
   if ( !optionInterface( "--in", args.in, profile, defaults.in, err ) ||
        !optionInterface( "--out", args.out, profile, defaults.out, err ) ) {
      return std::nullopt;
   }
   try {
      return readPacketFile( path, defaults );
   } catch ( const PacketError& e ) {
      err << e.what() << "\n";
      return std::nullopt;
   }
}

}  // namespace HalyardCli
