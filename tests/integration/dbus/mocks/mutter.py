'''What gnome-settings-daemon asks of Mutter: a display configuration without monitors, and an
idle monitor whose watches fire when the test says the user went idle ("BecomeIdle") or came
back ("BecomeActive"), on the test interface of its core object.'''

import dbus
from dbusmock import mockobject

BUS_NAME = 'org.gnome.Mutter.IdleMonitor'
MAIN_OBJ = '/org/gnome/Mutter/IdleMonitor'
MAIN_IFACE = 'org.gnome.Mutter.IdleMonitor'
SYSTEM_BUS = False
IS_OBJECT_MANAGER = True

CORE_OBJ = '/org/gnome/Mutter/IdleMonitor/Core'

FIRE = ('for watch in [w for w, idle in self.watches.items() if idle == {}]:\n'
        f'    self.EmitSignal("{MAIN_IFACE}", "WatchFired", "u", [dbus.UInt32(watch)])')


def load(mock, parameters):
    mock.AddObject(CORE_OBJ, MAIN_IFACE, {}, [
        ('AddIdleWatch', 't', 'u',
         'self.watches[len(self.watches) + 1] = True\nret = len(self.watches)'),
        ('AddUserActiveWatch', '', 'u',
         'self.watches[len(self.watches) + 1] = False\nret = len(self.watches)'),
        ('RemoveWatch', 'u', '', 'self.watches[args[0]] = None'),
    ])
    core = mockobject.objects[CORE_OBJ]
    core.watches = {}
    core.AddMethods(f'{BUS_NAME}.Test', [
        ('BecomeIdle', '', '', FIRE.format('True')),
        ('BecomeActive', '', '', FIRE.format('False')),
    ])

    mock.connection.request_name('org.gnome.Mutter.DisplayConfig')
    mock.AddObject('/org/gnome/Mutter/DisplayConfig', 'org.gnome.Mutter.DisplayConfig',
                   {'PowerSaveMode': dbus.Int32(0)}, [
                       ('GetResources', '', 'ua(uxiiiiiuaua{sv})a(uxiausauaua{sv})a(uxuudu)ii',
                        'ret = (1, [], [], [], 8192, 8192)'),
                   ])
