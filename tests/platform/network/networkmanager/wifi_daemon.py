"""python3-dbusmock's NetworkManager, with a radio whose access points answer as their names say."""
import uuid

import dbus
import dbusmock
from dbusmock.templates.networkmanager import *  # noqa: F401,F403 - its methods become this template's
from dbusmock.templates import networkmanager as base
from gi.repository import GLib

BUS_NAME, MAIN_OBJ, SYSTEM_BUS, IS_OBJECT_MANAGER = base.BUS_NAME, base.MAIN_OBJ, base.SYSTEM_BUS, True
DEVICE = "/org/freedesktop/NetworkManager/Devices/radio"
POINTS = "/org/freedesktop/NetworkManager/AccessPoint/"
IP6 = "/org/freedesktop/NetworkManager/IP6Config/1"
IP6_IFACE = "org.freedesktop.NetworkManager.IP6Config"
TEST_IFACE = "org.freedesktop.DBus.Mock"
SECURITY = "802-11-wireless-security"
AUTOMATIC = dbus.Array([{"address": "2001:db8:9::5", "prefix": dbus.UInt32(64)}], signature="a{sv}")
PASSPHRASE = "correct horse"
NO_SECRETS, DHCP_FAILED, USER_REQUESTED, SSID_NOT_FOUND = 7, 17, 39, 53
PSK, ENTERPRISE, SAE = 0x100, 0x200, 0x400
IN_MEMORY = 2
# name: strength, flags, WPA flags, RSN flags; the BSSID counts them
ACCESS_POINTS = {
    "home": (80, 1, 0, PSK), "open": (61, 0, 0, 0), "old": (20, 1, 0, 0), "wpa": (30, 1, PSK, 0), "new": (100, 1, 0, SAE),
    "both": (40, 1, 0, PSK | SAE), "office": (50, 1, 0, ENTERPRISE), "\xff\x01raw": (0, 0, 0, 0),
    "no-dhcp": (50, 0, 0, 0), "leaving": (50, 0, 0, 0), "left": (50, 0, 0, 0), "offline": (50, 0, 0, 0), "near": (50, 0, 0, 0),
    "silent": (50, 1, 0, PSK), "slow-dhcp": (50, 1, 0, PSK),
    "known": (50, 1, 0, PSK), "moved": (50, 1, 0, PSK), "guarded": (50, 1, 0, PSK), "fixed": (50, 1, 0, PSK),
}
ENDINGS = {"no-dhcp": DHCP_FAILED, "leaving": SSID_NOT_FOUND}
UNENDING = {"silent": base.DeviceState.CONFIG, "slow-dhcp": base.DeviceState.IP_CONFIG}
# name: passphrase, settings of the connection
PROFILES = {
    "known": (PASSPHRASE, {}), "moved": ("former horse", {}), "fixed": (PASSPHRASE, {"read-only": True}),
    "guarded": (PASSPHRASE, {"permissions": dbus.Array(["user:tv:"], signature="s")}),
}


def get(path, interface, name):
    return dbusmock.get_object(path).Get(interface, name)


def change(path, interface, properties):
    """As UpdateProperties, which cannot take object paths and structures."""
    changed = dbusmock.get_object(path)
    changed.props[interface].update(properties)
    changed.EmitSignal(dbus.PROPERTIES_IFACE, "PropertiesChanged", "sa{sv}as",
                       [interface, dbus.Dictionary(properties, signature="sv"), dbus.Array([], signature="s")])


def set_device(state, reason, active):
    old = get(DEVICE, base.DEVICE_IFACE, "State")
    point = active and get(active, base.ACTIVE_CONNECTION_IFACE, "SpecificObject")
    change(DEVICE, base.WIRELESS_DEVICE_IFACE, {"ActiveAccessPoint": dbus.ObjectPath(point or "/")})
    change(DEVICE, base.DEVICE_IFACE, {
        "ActiveConnection": dbus.ObjectPath(active or "/"), "State": dbus.UInt32(state),
        "Ip6Config": dbus.ObjectPath(IP6 if state == 100 else "/"),
        "StateReason": dbus.Struct((dbus.UInt32(state), dbus.UInt32(reason)), signature="uu")})
    dbusmock.get_object(DEVICE).EmitSignal(base.DEVICE_IFACE, "StateChanged", "uuu",
                                           [dbus.UInt32(state), old, dbus.UInt32(reason)])


def name_of(point):
    return bytes(get(point, base.ACCESS_POINT_IFACE, "Ssid")).decode("latin-1")


def runs(active):
    return active in get(base.MANAGER_OBJ, base.MANAGER_IFACE, "ActiveConnections")


def end(active, reason):
    """Its object stays until the reset, so that a client that is told of an activation still finds it."""
    if runs(active):
        requested = reason == USER_REQUESTED
        set_device(base.DeviceState.DEACTIVATING if requested else base.DeviceState.FAILED, reason, active)
        change(active, base.ACTIVE_CONNECTION_IFACE, {"State": dbus.UInt32(4)})
        set_device(base.DeviceState.DISCONNECTED, reason, None)
        change(base.MANAGER_OBJ, base.MANAGER_IFACE, {"ActiveConnections": dbus.Array([], signature="o")})


def succeed(active):
    if runs(active):
        point = get(active, base.ACTIVE_CONNECTION_IFACE, "SpecificObject")
        show_addresses(dbusmock.get_object(active).settings)
        # The loopback interface is there on every machine, and its gateway answers.
        change(DEVICE, base.DEVICE_IFACE, {
            "Ip6Connectivity": dbus.UInt32(3 if name_of(point) == "offline" else 4),
            "IpInterface": "lo" if name_of(point) == "near" else "tv-wlan"})
        set_device(base.DeviceState.ACTIVATED, 0, active)
        change(active, base.ACTIVE_CONNECTION_IFACE, {"State": dbus.UInt32(2), "Ip6Config": dbus.ObjectPath(IP6)})


def activate(manager, connection, _device, point):
    name = name_of(point)
    settings = dbusmock.get_object(connection).settings
    active = manager.AddActiveConnection([], connection, point, f"attempt{len(manager.attempts)}", 1)
    manager.attempts.append(active)
    running = dbusmock.get_object(active)
    running.settings = settings
    running.AddProperties(base.ACTIVE_CONNECTION_IFACE, {"Ip6Config": dbus.ObjectPath("/")})
    change(active, base.ACTIVE_CONNECTION_IFACE, {"Devices": dbus.Array([dbus.ObjectPath(DEVICE)], signature="o")})
    set_device(UNENDING.get(name, base.DeviceState.CONFIG), 0, active)
    if settings.get(SECURITY, {}).get("psk", PASSPHRASE) != PASSPHRASE:
        GLib.idle_add(end, active, NO_SECRETS)
    elif name in ENDINGS:
        GLib.idle_add(end, active, ENDINGS[name])
    elif name not in UNENDING:
        GLib.idle_add(succeed, active)
    return dbus.ObjectPath(active)


def add_and_activate(manager, settings, device, point):
    if name_of(point) == "left":
        raise dbus.exceptions.DBusException("no such thing", name=base.DEVICE_IFACE + ".SpecificObjectNotFound")
    settings = copy_of(settings)
    settings.setdefault("802-11-wireless", {})["ssid"] = get(point, base.ACCESS_POINT_IFACE, "Ssid")
    settings.setdefault("connection", {}).update({"type": "802-11-wireless", "id": "new"})
    connection = add_profile(settings)
    return (dbus.ObjectPath(connection), activate(manager, connection, device, point))


def copy_of(settings):
    return {name: dict(values) for name, values in settings.items()}


def add_profile(settings):
    path = dbusmock.get_object(base.SETTINGS_OBJ).SettingsAddConnection(settings)
    profile = dbusmock.get_object(path)
    profile.disk, profile.update2 = copy_of(settings), update2
    profile.ConnectionGetSettings, profile.ConnectionGetSecrets = without_secrets, secrets
    profile.AddMethod(base.CSETTINGS_IFACE, "Update2", "a{sa{sv}}ua{sv}", "a{sv}",
                      "self.update2(self, args[0], args[1]); ret = dbus.Dictionary({}, signature='sv')")
    return path


def without_secrets(profile):
    shown = copy_of(profile.settings)
    shown.get(SECURITY, {}).pop("psk", None)
    return shown


def secrets(profile, setting):
    psk = profile.settings.get(setting, {}).get("psk")
    return {setting: dbus.Dictionary({} if psk is None else {"psk": psk}, signature="sv")}


def update2(profile, settings, flags):
    """Settings without secrets leave those that are there; no settings at all only move the profile to the disk."""
    if profile.settings["connection"].get("permissions"):
        raise dbus.exceptions.DBusException("not authorized", name=base.SETTINGS_IFACE + ".PermissionDenied")
    if settings:
        old = profile.settings
        profile.settings = copy_of(settings)
        if "psk" in old.get(SECURITY, {}):
            profile.settings[SECURITY].setdefault("psk", old[SECURITY]["psk"])
    if flags != IN_MEMORY:
        profile.disk = copy_of(profile.settings)
    profile.EmitSignal(base.CSETTINGS_IFACE, "Updated", "", [])


def profiles():
    return [dbusmock.get_object(path) for path in dbusmock.get_object(base.SETTINGS_OBJ).ListConnections()]


def forget_memory(_manager):
    """What a restart would do to the profiles."""
    for profile in profiles():
        profile.settings = copy_of(profile.disk)
        profile.EmitSignal(base.CSETTINGS_IFACE, "Updated", "", [])


def reset(manager):
    """As it began, for a client that comes next."""
    end(get(DEVICE, base.DEVICE_IFACE, "ActiveConnection"), USER_REQUESTED)
    while manager.attempts:
        active = manager.attempts.pop()
        manager.object_manager_emit_removed(active)
        manager.RemoveObject(active)
    for profile in profiles():
        base.ConnectionDelete(profile)
    for name, (passphrase, connection) in PROFILES.items():
        add_profile({
            "connection": {"type": "802-11-wireless", "id": name, "uuid": str(uuid.uuid4()), **connection},
            "802-11-wireless": {"ssid": dbus.ByteArray(name.encode())},
            SECURITY: {"key-mgmt": "wpa-psk", "psk": passphrase}})


def show_addresses(settings):
    manual = settings.get("ipv6", {})
    is_manual = manual.get("method") == "manual"
    change(IP6, IP6_IFACE, {"AddressData": manual["address-data"] if is_manual else AUTOMATIC,
                            "Gateway": manual.get("gateway", "") if is_manual else "::1"})


def reapply(device):
    active = device.Get(base.DEVICE_IFACE, "ActiveConnection")
    show_addresses(dbusmock.get_object(get(active, base.ACTIVE_CONNECTION_IFACE, "Connection")).settings)


def load(mock, parameters):
    base.load(mock, {**parameters, "Version": "1.42.4", "Connectivity": dbus.UInt32(4)})
    manager = dbusmock.get_object(base.MANAGER_OBJ)
    manager.attempts = []
    manager.activate_connection, manager.add_and_activate_connection = activate, add_and_activate
    manager.deactivate_connection = lambda _manager, active: end(active, USER_REQUESTED)
    manager.forget_memory, manager.reset = forget_memory, reset
    manager.AddProperties(base.MANAGER_IFACE, {"ConnectivityCheckAvailable": True, "ConnectivityCheckEnabled": True})
    manager.AddMethod(base.MANAGER_IFACE, "GetPermissions", "", "a{ss}",
                      "ret = {'org.freedesktop.NetworkManager.settings.modify.system': 'yes', "
                      "'org.freedesktop.NetworkManager.settings.modify.own': 'no'}")
    manager.AddMethod(TEST_IFACE, "ForgetMemory", "", "", "self.forget_memory(self)")
    manager.AddMethod(TEST_IFACE, "Reset", "", "", "self.reset(self)")
    manager.AddObject(IP6, IP6_IFACE, {
        "AddressData": AUTOMATIC, "Gateway": "::1",
        "Nameservers": dbus.Array([dbus.ByteArray(bytes.fromhex("20010db8000900000000000000000053"))], signature="ay"),
        "NameserverData": dbus.Array([], signature="a{sv}")}, [])
    manager.object_manager_emit_added(IP6)
    add_radio(manager)
    add_access_points(manager)


def add_radio(manager):
    manager.AddWiFiDevice("radio", "tv-wlan", base.DeviceState.DISCONNECTED)
    device = dbusmock.get_object(DEVICE)
    device.reapply = reapply
    device.AddProperties(base.WIRELESS_DEVICE_IFACE, {"ActiveAccessPoint": dbus.ObjectPath("/"), "LastScan": dbus.Int64(0)})
    device.AddProperties(base.DEVICE_IFACE, {
        "Ip6Config": dbus.ObjectPath("/"), "Ip4Connectivity": dbus.UInt32(4), "Ip6Connectivity": dbus.UInt32(4)})
    device.AddMethod(base.DEVICE_IFACE, "Reapply", "a{sa{sv}}tu", "", "self.reapply(self)")
    device.AddMethod(base.WIRELESS_DEVICE_IFACE, "RequestScan", "a{sv}", "",
                     f"self.UpdateProperties('{base.WIRELESS_DEVICE_IFACE}', {{'LastScan': dbus.Int64(5)}})")


def add_access_points(manager):
    paths = []
    for number, (name, (strength, flags, wpa, rsn)) in enumerate(ACCESS_POINTS.items(), 1):
        paths.append(dbus.ObjectPath(POINTS + str(number)))
        manager.AddObject(paths[-1], base.ACCESS_POINT_IFACE, {
            "Ssid": dbus.ByteArray(name.encode("latin-1")), "HwAddress": f"02:00:5E:10:00:{number:02X}",
            "Strength": dbus.Byte(strength), "Flags": dbus.UInt32(flags), "WpaFlags": dbus.UInt32(wpa),
            "RsnFlags": dbus.UInt32(rsn), "Mode": dbus.UInt32(2), "Frequency": dbus.UInt32(2412),
            "MaxBitrate": dbus.UInt32(54000), "LastSeen": dbus.Int32(1)}, [])
        manager.object_manager_emit_added(paths[-1])
    change(DEVICE, base.WIRELESS_DEVICE_IFACE, {"AccessPoints": dbus.Array(paths, signature="o")})
