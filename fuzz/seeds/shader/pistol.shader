models/weapons/pistol.tga
