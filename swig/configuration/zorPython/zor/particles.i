// Particle systems, what emits into them, and what is drawn from.

ZOR_SHARED(zor::ParticleSystem)
ZOR_SHARED(zor::Distribution)
ZOR_SHARED(zor::ParticleModel)
ZOR_SHARED(zor::ParticleDistribution)
ZOR_SHARED(zor::RigidBodyDistribution)
ZOR_SHARED(zor::EmitterBase)
ZOR_SHARED(zor::Emitter)
ZOR_SHARED(zor::RigidBodyEmitter)

%copyctor zor::RandomGenerator;
%include <zor/RandomGenerator.h>
%copyctor zor::RandomReal;
%include <zor/RandomReal.h>

// The memory of a particle system. Its storage lives as long as the array, and a buffer holds the array.
%nodefaultctor zor::ParticleArray;
%extend zor::ParticleArray {
  PyObject* _memory() {
    zorBinding::Memory memory;
    memory.data = $self->data();
    switch ($self->element()) {
      case zor::ParticleArray::Element::REAL: memory.format = "d"; memory.itemSize = 8; break;
      case zor::ParticleArray::Element::FLOAT: memory.format = "f"; memory.itemSize = 4; break;
      case zor::ParticleArray::Element::BYTE: memory.format = "B"; memory.itemSize = 1; break;
      case zor::ParticleArray::Element::INTEGER: memory.format = "L"; memory.itemSize = 8; break;
    }
    memory.shape[0] = static_cast<long>($self->getNumRows());
    memory.shape[1] = static_cast<long>($self->getNumColumns());
    memory.dimensions = $self->getNumColumns() > 1 ? 2 : 1;
    return zorBinding::newMemoryView(memory);
  }
  size_t __len__() const { return $self->getNumRows(); }
  %pythoncode %{
    def __buffer__(self, flags: int) -> memoryview:
        view: memoryview = self._memory()
        return view if self.isWritable() else view.toreadonly()

    def __getitem__(self, index: int) -> object:
        view = memoryview(self)
        if view.ndim == 1:
            return view[index]
        index = range(len(view))[index]
        return tuple(view[index, column] for column in range(self.getNumColumns()))

    def __repr__(self) -> str:
        return f"ParticleArray(<{self.getNumRows()} rows of {self.getNumColumns()}>)"
  %}
}
%include <zor/ParticleArray.h>

%copyctor zor::ParticleContacts;
%ignore zor::ParticleContacts::NO_PARTICLE; // an int would be -1, which is in no vector of unsigned numbers
%extend zor::ParticleContacts {
  size_t __len__() const { return $self->getNumContacts(); }
  %pythoncode %{
    NO_PARTICLE: int = 0xFFFFFFFF
    """Stands in the place of the second particle where the second is a geometry."""
  %}
}
%include <zor/ParticleContacts.h>

%extend zor::ParticleSystem {
  size_t __len__() const { return $self->getNumParticles(); }
  %pythoncode %{
    def __bool__(self) -> bool:
        return True
  %}
}
%include <zor/ParticleSystem.h>

%include <zor/Distribution.h>
%include <zor/ParticleDistribution.h>
%include <zor/RigidBodyDistribution.h>
%include <zor/EmitterBase.h>
%include <zor/Emitter.h>
%include <zor/RigidBodyEmitter.h>
