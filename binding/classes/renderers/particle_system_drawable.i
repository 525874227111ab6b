// The drawable of a particle system. A new one is handed over without a reference: its proxy's destroy hook, that of
// the scene graph's drawables, ends an object that nobody holds.
%include <zorOSG/ParticleSystemDrawable.h>
