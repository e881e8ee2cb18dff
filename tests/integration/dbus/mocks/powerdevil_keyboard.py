'''KDE PowerDevil's keyboard brightness control: levels 0..max, starting at "level".'''

BUS_NAME = 'org.kde.Solid.PowerManagement'
MAIN_OBJ = '/org/kde/Solid/PowerManagement/Actions/KeyboardBrightnessControl'
MAIN_IFACE = 'org.kde.Solid.PowerManagement.Actions.KeyboardBrightnessControl'
SYSTEM_BUS = False


def load(mock, parameters):
    mock.level = parameters.get('level', 0)
    mock.AddMethods(MAIN_IFACE, [
        ('keyboardBrightnessMax', '', 'i', f'ret = {parameters.get("max", 3)}'),
        ('keyboardBrightness', '', 'i', 'ret = self.level'),
        ('setKeyboardBrightnessSilent', 'i', '', 'self.level = args[0]'),
    ])
