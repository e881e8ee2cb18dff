'''UPower (python3-dbusmock's own stand-in) with a keyboard backlight: levels 0..max, starting
at "level". Like UPower, it tells of each level set through SetBrightness with the source
"external".'''

import dbus
from dbusmock import mockobject
from dbusmock.templates import upower

BUS_NAME = upower.BUS_NAME
MAIN_OBJ = upower.MAIN_OBJ
MAIN_IFACE = upower.MAIN_IFACE
SYSTEM_BUS = True

KBD_OBJ = '/org/freedesktop/UPower/KbdBacklight'
KBD_IFACE = 'org.freedesktop.UPower.KbdBacklight'


def load(mock, parameters):
    upower.load(mock, parameters)
    mock.AddObject(KBD_OBJ, KBD_IFACE, {}, [
        ('GetMaxBrightness', '', 'i', f'ret = {parameters.get("max", 3)}'),
        ('GetBrightness', '', 'i', 'ret = self.level'),
        ('SetBrightness', 'i', '',
         'self.level = args[0]\n'
         f'self.EmitSignal("{KBD_IFACE}", "BrightnessChanged", "i", [args[0]])\n'
         f'self.EmitSignal("{KBD_IFACE}", "BrightnessChangedWithSource", "is", '
         '[args[0], "external"])'),
    ])
    mockobject.objects[KBD_OBJ].level = dbus.Int32(parameters.get('level', 0))
