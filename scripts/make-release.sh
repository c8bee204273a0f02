#!/usr/bin/env bash
# Makes a Linux release of Tarnwick: the archive that unpacks as a release
# folder (tarnwick/current -> tarnwick-VERSION), its ed25519 signature, and
# the item for the update feed.
#
#   scripts/make-release.sh --key KEY.pem --url-base URL [options]
#   scripts/make-release.sh --new-key KEY.pem
#
# --new-key makes a signing key and prints its public half, which a release
# build is configured with (-DTARNWICK_UPDATE_PUBLIC_KEY=...). Keep the key
# outside the repository: the script refuses one inside it.
#
# Options:
#   --key FILE             the signing key (PEM, ed25519)
#   --url-base URL         where the archive will be downloaded from
#   --feed-url URL         the feed's address built into the program
#   --program FILE         a built tarnwick to release instead of building one
#   --restart-helper FILE  its AppRestartHelper (default: beside the program)
#   --channel NAME         a release channel for the item (default: none)
#   --notes FILE           release notes in Markdown
#   --appcast FILE         a feed to add the item to (made when missing)
#   --out DIR              where the files go (default: build-release/out)
set -euo pipefail
repository=$(cd "$(dirname "$0")/.." && pwd)

fail() { echo "make-release: $*" >&2; exit 1; }

key="" url_base="" feed_url="" program="" helper="" channel="" notes="" appcast=""
out="$repository/build-release/out" allow_key_in_repository=0
while [ $# -gt 0 ]; do
  case "$1" in
    --new-key)
      [ $# -ge 2 ] || fail "--new-key needs a file"
      [ -e "$2" ] && fail "$2 exists already"
      (umask 077 && openssl genpkey -algorithm ed25519 -out "$2")
      openssl pkey -in "$2" -pubout -outform DER | tail -c 32 | base64
      exit 0 ;;
    --key) key=$2; shift ;;
    --url-base) url_base=${2%/}; shift ;;
    --feed-url) feed_url=$2; shift ;;
    --program) program=$2; shift ;;
    --restart-helper) helper=$2; shift ;;
    --channel) channel=$2; shift ;;
    --notes) notes=$2; shift ;;
    --appcast) appcast=$2; shift ;;
    --out) out=$2; shift ;;
    # For the tests only, which sign with the test key kept beside them.
    --allow-key-in-repository) allow_key_in_repository=1 ;;
    -h|--help) sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//'; exit 0 ;;
    *) fail "unknown option $1" ;;
  esac
  shift
done

[ -n "$key" ] && [ -r "$key" ] || fail "no readable signing key (--key)"
[ -n "$url_base" ] || fail "no download address (--url-base)"
key=$(realpath "$key")
if [ "$allow_key_in_repository" != 1 ] && [[ "$key" == "$repository"/* ]]; then
  fail "the signing key lies inside the repository; keep it elsewhere"
fi
public_key=$(openssl pkey -in "$key" -pubout -outform DER | tail -c 32 | base64)

if [ -z "$program" ]; then
  cmake -S "$repository" -B "$repository/build-release" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DTARNWICK_BUILD_TESTS=OFF -DTARNWICK_BUILD_BENCHMARKS=OFF \
    -DTARNWICK_BUILD_NUMBER="$(git -C "$repository" rev-list --count HEAD)" \
    -DTARNWICK_UPDATE_PUBLIC_KEY="$public_key" -DTARNWICK_UPDATE_FEED_URL="$feed_url" >/dev/null
  cmake --build "$repository/build-release" --target tarnwick AppRestartHelper
  program=$repository/build-release/src/main/tarnwick
fi
[ -x "$program" ] || fail "no program at $program"
if [ -z "$helper" ]; then
  helper=$(find "$(dirname "$program")/.." -name AppRestartHelper -type f -perm -u+x 2>/dev/null \
           | head -n 1)
fi

# "Tarnwick 0.2.0 (build 57)"
version_line=$("$program" --version)
version=$(sed -n 's/^Tarnwick \([^ ]*\) (build \([^)]*\))$/\1/p' <<<"$version_line")
build=$(sed -n 's/^Tarnwick \([^ ]*\) (build \([^)]*\))$/\2/p' <<<"$version_line")
[ -n "$version" ] && [ -n "$build" ] || fail "can't read the version from '$version_line'"

staging=$(mktemp -d)
trap 'rm -rf "$staging"' EXIT
folder="tarnwick-$version"
mkdir -p "$staging/tarnwick/$folder/bin" "$staging/tarnwick/$folder/libexec/tarnwick"
install -m 755 "$program" "$staging/tarnwick/$folder/bin/tarnwick"
if [ -n "$helper" ]; then
  install -m 755 "$helper" "$staging/tarnwick/$folder/libexec/tarnwick/AppRestartHelper"
else
  echo "make-release: warning: no AppRestartHelper; installed updates won't restart" >&2
fi
ln -s "$folder" "$staging/tarnwick/current"

mkdir -p "$out"
archive_name="tarnwick-$version-linux-$(uname -m).tar.gz"
archive="$out/$archive_name"
tar --sort=name --owner=0 --group=0 --numeric-owner -C "$staging" -czf "$archive" tarnwick
length=$(stat -c %s "$archive")
signature=$(openssl pkeyutl -sign -inkey "$key" -rawin -in "$archive" | base64 -w0)
printf '%s\n' "$signature" >"$archive.sig"

xml_escape() { sed -e 's/&/\&amp;/g' -e 's/</\&lt;/g' -e 's/>/\&gt;/g' -e 's/"/\&quot;/g'; }
item="$out/tarnwick-$version.item.xml"
{
  echo "    <item>"
  echo "      <title>Version $version</title>"
  echo "      <pubDate>$(LC_ALL=C date -R)</pubDate>"
  echo "      <sparkle:version>$build</sparkle:version>"
  echo "      <sparkle:shortVersionString>$version</sparkle:shortVersionString>"
  [ -n "$channel" ] && echo "      <sparkle:channel>$(xml_escape <<<"$channel")</sparkle:channel>"
  if [ -n "$notes" ]; then
    echo "      <description sparkle:format=\"markdown\"><![CDATA[$(sed 's/]]>/]]]]><![CDATA[>/g' "$notes")]]></description>"
  fi
  echo "      <enclosure url=\"$(xml_escape <<<"$url_base/$archive_name")\" length=\"$length\"" \
       "type=\"application/gzip\" sparkle:os=\"linux\" sparkle:edSignature=\"$signature\"/>"
  echo "    </item>"
} >"$item"

if [ -n "$appcast" ]; then
  if [ ! -s "$appcast" ]; then
    cat >"$appcast" <<FEED
<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
  <channel>
    <title>Tarnwick</title>
  </channel>
</rss>
FEED
  fi
  # The newest item goes first, right after the channel's own elements.
  awk -v item="$item" '
    !done && (/<item>/ || /<\/channel>/) { while ((getline line < item) > 0) print line; done = 1 }
    { print }' "$appcast" >"$appcast.new"
  mv "$appcast.new" "$appcast"
fi

echo "archive:   $archive ($length bytes)"
echo "signature: $signature"
echo "item:      $item"
echo "public key of the signing key: $public_key"
