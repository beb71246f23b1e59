#!/usr/bin/env perl
# Checks manifests for winget (*.yaml, schema 1.6.0) and Scoop (*.json): check_manifests.pl FILE... Their schemas lie on the
# net and checks run without it, so what they ask of the keys that are used here stands below; a key that does not, is
# refused. Prints a line for each fault; ends with 1 where there is one.
use strict;
use warnings;
use CPAN::Meta::YAML;
use JSON::PP;

my $url = qr{^https?://[^\s@]+$};
my $identifier = qr{^[^.\s\\/:*?"<>|]{1,32}(\.[^.\s\\/:*?"<>|]{1,32}){1,7}$};
my $version = qr{^[^\\/:*?"<>|\s@]{1,128}$};
my $locale = qr{^[a-zA-Z]{2,3}(-[a-zA-Z0-9]{2,8})*$};
sub text { my ($least, $most) = @_; return qr{^(?=[^@]*$).{$least,$most}$}s }

# A pattern: a text that matches. An array: a list whose every entry is so. A hash: an object with these keys; a "!" in front
# of a key makes it one that has to be there.
my %common = ('!PackageIdentifier' => $identifier, '!PackageVersion' => $version, '!ManifestVersion' => qr{^1\.6\.0$});
my %schemas = (
    version => { %common, '!DefaultLocale' => $locale, '!ManifestType' => qr{^version$} },
    installer => {
        %common,
        '!ManifestType' => qr{^installer$},
        Platform => [qr{^Windows\.(Desktop|Universal)$}],
        MinimumOSVersion => qr{^\d{1,5}(\.\d{1,5}){0,3}$},
        '!InstallerType' => qr{^(msix|msi|appx|exe|zip|inno|nullsoft|wix|burn|pwa|portable)$},
        Scope => qr{^(user|machine)$},
        InstallModes => [qr{^(interactive|silent|silentWithProgress)$}],
        UpgradeBehavior => qr{^(install|uninstallPrevious|deny)$},
        ProductCode => text(1, 255),
        ReleaseDate => qr{^\d{4}-\d\d-\d\d$},
        '!Installers' => [{
            '!Architecture' => qr{^(x86|x64|arm|arm64|neutral)$},
            '!InstallerUrl' => $url,
            '!InstallerSha256' => qr{^[A-Fa-f0-9]{64}$},
        }],
    },
    defaultLocale => {
        %common,
        '!ManifestType' => qr{^defaultLocale$},
        '!PackageLocale' => $locale,
        '!Publisher' => text(2, 256),
        '!PackageName' => text(2, 256),
        PackageUrl => $url,
        '!License' => text(3, 512),
        '!ShortDescription' => text(3, 256),
        Description => text(3, 10000),
        Tags => [qr{^[^\s@]{1,40}$}],
    },
    scoop => {
        '!version' => qr{^[\w.+-]+$},
        description => text(1, 1000),
        '!homepage' => $url,
        '!license' => text(1, 100),
        '!architecture' => { '!64bit' => { '!url' => $url, '!hash' => qr{^[a-fA-F0-9]{64}$} } },
        extract_dir => text(1, 250),
        shortcuts => [[text(1, 250)]],
        persist => text(1, 250),
    },
);

my $faults = 0;
sub fault { print "check_manifests.pl: @_\n"; $faults++ }

sub check {
    my ($where, $value, $schema) = @_;
    if (ref $schema eq 'Regexp') {
        fault("$where is no text") if ref $value;
        fault("$where is \"" . ($value // '') . '"') if !ref $value && ($value // '') !~ $schema;
    } elsif (ref $schema eq 'ARRAY') {
        return fault("$where is no list of something") if ref $value ne 'ARRAY' || !@$value;
        check("$where\[$_]", $value->[$_], $schema->[0]) for 0 .. $#$value;
    } else {
        return fault("$where is no object") if ref $value ne 'HASH';
        for my $key (sort keys %$schema) {
            my ($must, $name) = $key =~ /^(!?)(.*)$/;
            fault("$where has no $name") if $must && !exists $value->{$name};
            check("$where/$name", $value->{$name}, $schema->{$key}) if exists $value->{$name};
        }
        for my $name (sort keys %$value) {
            fault("$where has $name, which is not known here") if !exists $schema->{$name} && !exists $schema->{"!$name"};
        }
    }
}

for my $file (@ARGV) {
    open(my $input, '<:encoding(UTF-8)', $file) or die "$file: $!\n";
    my $content = do { local $/; <$input> };
    my $manifest = eval { $file =~ /\.json$/ ? JSON::PP->new->decode($content) : CPAN::Meta::YAML->read_string($content)->[0] };
    if (!defined $manifest) {
        fault("$file cannot be read: " . ($@ || 'it is empty'));
        next;
    }
    my $kind = $file =~ /\.json$/ ? 'scoop' : ref $manifest eq 'HASH' ? $manifest->{ManifestType} // '' : '';
    exists $schemas{$kind} ? check($file, $manifest, $schemas{$kind}) : fault("$file has the type \"$kind\"");
}
print scalar(@ARGV), " manifests keep to their schemas.\n" if !$faults;
exit($faults ? 1 : 0);
