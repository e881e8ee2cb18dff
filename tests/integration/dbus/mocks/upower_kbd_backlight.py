'''UPower with nothing but its keyboard backlight: levels 0..max, starting at "level".'''

BUS_NAME = 'org.freedesktop.UPower'
MAIN_OBJ = '/org/freedesktop/UPower/KbdBacklight'
MAIN_IFACE = 'org.freedesktop.UPower.KbdBacklight'
SYSTEM_BUS = True


def load(mock, parameters):
    mock.level = parameters.get('level', 0)
    mock.AddMethods(MAIN_IFACE, [
        ('GetMaxBrightness', '', 'i', f'ret = {parameters.get("max", 3)}'),
        ('GetBrightness', '', 'i', 'ret = self.level'),
        ('SetBrightness', 'i', '', 'self.level = args[0]'),
    ])
