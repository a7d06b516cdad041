# To be sourced by scripts that run as root: creates a minimal Debian in a folder and runs programs in it. All
# mounts are made in a namespace that ends with the script, so none can remain. $bare_cache keeps the minimal
# system (created again every week), the downloaded packages, and the compiler cache.
# shellcheck shell=bash

bare_cache=${TESSEL_BARE_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tessel-bare}
# Several users, roots and clones share the compiler cache.
shared_ccache=(CCACHE_UMASK=000 CCACHE_COMPILERCHECK=content CCACHE_NOHASHDIR=yes CCACHE_MAXSIZE=2G)

# Whether this user can create such a root folder here.
may_make_root() { [ "$(id -u)" -eq 0 ] && unshare --mount --pid --fork chroot / true 2> /dev/null; }

# in_namespaces "$@": runs this script again with these arguments, in its own mount and process namespaces and
# with an empty folder $bare. Both are removed when the script ends.
in_namespaces() {
    [ -z "${bare:-}" ] || return 0
    bare=$(mktemp -d)
    export bare
    chmod 755 "$bare"
    unshare --mount --pid --fork --kill-child "$0" "$@" < /dev/null &
    local namespace=$! status=0
    # shellcheck disable=SC2064
    trap "kill -KILL $namespace; rm -rf --one-file-system '$bare'; exit 1" INT TERM HUP
    wait "$namespace" || status=$?
    rm -rf --one-file-system "$bare"
    exit "$status"
}

debian_number() {
    case "$1" in
        bookworm) echo 12 ;;
        trixie) echo 13 ;;
        *) echo "Not a supported Debian: $1" >&2 && return 2 ;;
    esac
}

# mirror_of RELEASE: the archive that this machine's apt uses for it; empty when it has none.
mirror_of() {
    apt-get indextargets --format '$(CREATED_BY) $(RELEASE) $(COMPONENT) $(REPO_URI)' |
        awk -v release="$1" '$1 == "Packages" && $2 == release && $3 == "main" { print $4; exit }'
}

# keep_base SUITE: keeps an archive of the minimal system in $bare_cache up to date.
keep_base() {
    local archive=$bare_cache/$1.tar own main security
    mkdir -p "$bare_cache"
    exec 8> "$archive.lock"
    flock 8
    if [ -z "$(find "$archive" -mtime -7 2> /dev/null)" ]; then
        own=$(. /etc/os-release && echo "$VERSION_CODENAME")
        [ -n "$(mirror_of "$own")" ] || apt-get -qq update
        main=$(mirror_of "$own")
        security=$(mirror_of "$own-security")
        [ -n "$main" ] || { echo "apt's sources list no Debian archive" >&2; return 1; }
        rm -rf "$bare/base"
        debootstrap --variant=minbase "$1" "$bare/base" "$main" > "$bare/log" 2>&1 ||
            { tail -20 "$bare/log" >&2; return 1; }
        {
            echo "deb $main $1 main"
            echo "deb $main $1-updates main"
            [ -z "$security" ] || echo "deb $security $1-security main"
        } > "$bare/base/etc/apt/sources.list"
        # Start no services, and do not wait for the disk: a crash may lose this folder.
        printf '#!/bin/sh\nexit 101\n' > "$bare/base/usr/sbin/policy-rc.d"
        chmod +x "$bare/base/usr/sbin/policy-rc.d"
        echo force-unsafe-io > "$bare/base/etc/dpkg/dpkg.cfg.d/unsafe-io"
        rm -f "$bare/base"/var/cache/apt/archives/*.deb
        tar -C "$bare/base" -cf "$archive.new" .
        mv "$archive.new" "$archive"
        rm -rf "$bare/base"
    fi
    exec 8>&-
}

# make_root SUITE: creates a minimal Debian in $root, a folder in $bare.
make_root() {
    suite=$1
    root=$bare/$suite
    keep_base "$suite"
    mkdir "$root"
    tar -C "$root" -xf "$bare_cache/$suite.tar"
    cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
    mkdir -p "$bare_cache/archives-$suite"
    find "$bare_cache/archives-$suite" -name '*.deb' -mtime +30 -delete
    cp "$bare_cache/archives-$suite"/*.deb "$root/var/cache/apt/archives/" 2> /dev/null || true

    mount -t proc proc "$root/proc"
    mount -t tmpfs -o mode=755 dev "$root/dev"
    local device
    for device in null zero full random urandom tty; do
        touch "$root/dev/$device"
        mount --bind "/dev/$device" "$root/dev/$device"
    done
    mkdir "$root/dev/pts" "$root/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666,mode=620,gid=5 devpts "$root/dev/pts"
    mount -t tmpfs -o mode=1777 shm "$root/dev/shm"
    ln -s pts/ptmx "$root/dev/ptmx"
    ln -s /proc/self/fd "$root/dev/fd"
    local number=0
    for device in stdin stdout stderr; do
        ln -s "fd/$((number++))" "$root/dev/$device"
    done
}

# keep_packages: keeps the packages downloaded in $root for the next time.
keep_packages() {
    cp -u "$root"/var/cache/apt/archives/*.deb "$bare_cache/archives-$suite/" 2> /dev/null || true
}

# inside USER COMMAND...: runs the command in $root as that user, with a minimal environment.
inside() {
    local user=$1 ids home
    shift
    ids=$(awk -F: -v user="$user" '$1 == user { print $3 ":" $4 }' "$root/etc/passwd")
    home=$(awk -F: -v user="$user" '$1 == user { print $6 }' "$root/etc/passwd")
    env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
        HOME="$home" USER="$user" LOGNAME="$user" SHELL=/bin/bash \
        chroot --userspec="$ids" --groups="${ids#*:}" "$root" "$@"
}
